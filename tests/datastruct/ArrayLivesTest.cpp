// Objects moved as bytes: every slot up to the capacity holds one live object at any time, none is
// doubled, none is lost, and their own copy operations do not run on moves.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "datastruct/Array.h"
#include "tests/datastruct/ArrayLives.h"

using TamLib::Array;
using test::Life;

namespace {

TEST(ArrayLives, ConstructionsLessDestructionsAreTheSlotsThroughAnyOperations) {
    std::mt19937 random(5);
    Life::Start();
    {
        Array<Life> array;
        array.compare = Life::Compare;
        std::vector<int> model;
        for (int step = 0; step < 20000; ++step) {
            const int n = static_cast<int>(model.size());
            const int value = static_cast<int>(random() % 50);
            const int at = static_cast<int>(random() % static_cast<unsigned>(n + 1));
            switch (random() % 12) {
                case 0:
                case 1:
                case 2:
                    array.Append(Life(value));
                    model.push_back(value);
                    break;
                case 3:
                case 4:
                    array.Insert(at, Life(value));
                    model.insert(model.begin() + at, value);
                    break;
                case 5: {
                    const int length = static_cast<int>(random() % 5);
                    if (at == n || at + length > n) break;
                    array.Remove(at, static_cast<std::uint32_t>(length));
                    model.erase(model.begin() + at, model.begin() + at + length);
                    break;
                }
                case 6:
                    if (n > 0) {
                        array.Append(array[-1]);
                        model.push_back(model.back());
                    }
                    break;
                case 7:
                    array.Reverse();
                    std::reverse(model.begin(), model.end());
                    break;
                case 8:
                    array.Resize(static_cast<std::uint32_t>(n + value));
                    break;
                case 9:
                    if (random() % 4 == 0) {
                        array.Sort();
                        std::sort(model.begin(), model.end());
                    }
                    break;
                case 10:
                    if (random() % 20 == 0) {
                        array.SortUnique();
                        std::sort(model.begin(), model.end());
                        model.erase(std::unique(model.begin(), model.end()), model.end());
                        array.unique = false;
                        array.sorted = false;
                    }
                    break;
                default:
                    array.Set(n + value % 3, Life(value));
                    model.resize(static_cast<std::size_t>(n + value % 3 + 1));
                    model.back() = value;
                    for (std::size_t i = static_cast<std::size_t>(n); i + 1 < model.size(); ++i) {
                        model[i] = array.data[i].Value();
                    }
                    break;
            }
            if (random() % 300 == 0) {
                array.Clear();
                model.clear();
            }
            ASSERT_EQ(Life::living.size(), array.capacity) << "step " << step;
            ASSERT_EQ(Life::errors, 0) << "step " << step;
            ASSERT_EQ(array.count, model.size());
            for (std::size_t i = 0; i < model.size(); ++i) {
                ASSERT_EQ(array.data[i].Value(), model[i]) << "step " << step;
            }
        }
    }
    EXPECT_EQ(Life::living.size(), 0u);
    EXPECT_EQ(Life::errors, 0);
}

TEST(ArrayLives, SpareSlotsAreRotatedIntoTheGap) {
    Life::Start();
    Array<Life> array(8);
    for (int i = 1; i <= 3; ++i) array.Append(Life(i));
    array.data[3] = Life(30);  // spare slots hold objects that can be told from new ones
    array.data[4] = Life(40);
    array.MakeRoom(1, 2);
    EXPECT_EQ(array.data[1].Value(), 30);
    EXPECT_EQ(array.data[2].Value(), 40);
    EXPECT_EQ(array.data[3].Value(), 2);
    EXPECT_EQ(array.data[4].Value(), 3);
    EXPECT_EQ(Life::living.size(), 8u);
}

// Counts its copies and knows where it was born.
struct Born {
    Born() : place(this) {}
    Born(const Born& other) : value(other.value), place(this) { ++copies; }
    Born& operator=(const Born& other) {
        value = other.value;
        ++copies;
        return *this;
    }

    static inline int copies = 0;
    int value = 0;
    const void* place;
};

TEST(ArrayLives, ElementsMoveWithoutTheirCopyOperations) {
    Array<Born> array(4);
    for (int i = 0; i < 4; ++i) {
        Born born;
        born.value = i;
        array.Append(born);
    }
    const void* third = array.data[2].place;
    Born::copies = 0;
    array.MakeRoom(0, 3);
    EXPECT_EQ(Born::copies, 0);
    EXPECT_EQ(array.data[5].place, third);  // the same object elsewhere
    array.count += 3;
    array.Remove(0, 3);
    array.Reverse();
    array.Resize(100);
    EXPECT_EQ(Born::copies, 0);
    EXPECT_EQ(array.data[1].value, 2);
    EXPECT_EQ(array.data[1].place, third);
}

TEST(ArrayLives, BitwiseElementsAreNeitherConstructedNorAssigned) {
    Array<Born> array;
    array.bitwise = true;
    array.Resize(3);
    EXPECT_EQ(array.data[0].place, nullptr);
    Born born;
    born.value = 7;
    Born::copies = 0;
    array.Append(born);
    array.Set(5, born);
    array.Insert(0, born);
    const Array<Born> copy(array);
    EXPECT_EQ(Born::copies, 0);
    EXPECT_EQ(copy[0].place, &born);
    EXPECT_EQ(copy[0].value, 7);
}

TEST(ArrayLives, AssignmentDestroysWhatTheTargetHeld) {
    Life::Start();
    {
        Array<Life> source(2);
        source.Append(Life(1));
        Array<Life> target(9);
        target.Append(Life(2));
        target = source;
        EXPECT_EQ(Life::living.size(), 3u);  // two slots and one
        EXPECT_EQ(target[0].Value(), 1);
    }
    EXPECT_EQ(Life::living.size(), 0u);
    EXPECT_EQ(Life::errors, 0);
}

}  // namespace
