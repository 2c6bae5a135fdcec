#include "host/console/Interruption.h"

#include <gtest/gtest.h>

#include <csignal>
#include <vector>

namespace {

using host::console::Interruption;

int heard = 0;

void hear(int signal) {
    std::signal(signal, hear);  // each signal takes its handler away on Windows
    ++heard;
}

TEST(Interruption, IsToldAtTheNextStepAndNotWhenAllIsDone) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const Interruption interruption;
        std::vector<double> shown;
        const auto watching = interruption.watching([&](double part) { shown.push_back(part); });
        watching(0.25);
        std::raise(signal);
        EXPECT_THROW(watching(0.5), Interruption::Happened);
        watching(1.0);
        EXPECT_EQ(shown, (std::vector<double>{0.25, 1.0}));
    }
}

TEST(Interruption, IsForgottenByTheNextOne) {
    {
        const Interruption first;
        std::raise(SIGINT);
    }
    const Interruption second;
    EXPECT_NO_THROW(second.watching({})(0.5));
}

TEST(Interruption, HoldsForAllThatNest) {
    const auto before = std::signal(SIGTERM, hear);
    heard = 0;
    {
        const Interruption outer(Interruption::Second::endsTheProgram);
        EXPECT_FALSE(outer.happened());
        {
            const Interruption inner;
            std::raise(SIGTERM);
            std::raise(SIGTERM);  // noted like the first
            EXPECT_TRUE(inner.happened());
        }
        EXPECT_TRUE(outer.happened());
        const Interruption next;
        EXPECT_TRUE(next.happened());
    }
    EXPECT_EQ(heard, 1);  // passed on, once
    std::raise(SIGTERM);
    EXPECT_EQ(heard, 2);
    std::signal(SIGTERM, before);
}

TEST(InterruptionDeathTest, ASecondSignalEndsTheProgramWhereThatIsAsked) {
    const auto twice = [] {
        const Interruption interruption(Interruption::Second::endsTheProgram);
        std::raise(SIGTERM);
        std::raise(SIGTERM);
    };
#ifdef _WIN32
    EXPECT_EXIT(twice(), testing::ExitedWithCode(3), "");
#else
    EXPECT_EXIT(twice(), testing::KilledBySignal(SIGTERM), "");
#endif
}

TEST(Interruption, GivesTheSignalsBackToWhomeverHadThem) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const auto before = std::signal(signal, hear);
        heard = 0;
        { const Interruption interruption; }
        EXPECT_EQ(heard, 0);
        std::raise(signal);
        EXPECT_EQ(heard, 1);
        std::signal(signal, before);
    }
}

TEST(Interruption, ARequestToEndGoesOnToWhomeverListened) {
    const auto before = std::signal(SIGTERM, hear);
    heard = 0;
    {
        const Interruption interruption;
        std::raise(SIGTERM);
        EXPECT_EQ(heard, 0);
    }
    EXPECT_EQ(heard, 1);
    std::signal(SIGTERM, before);
}

TEST(Interruption, CtrlCWasForTheFileAlone) {
    const auto before = std::signal(SIGINT, hear);
    heard = 0;
    {
        const Interruption interruption;
        std::raise(SIGINT);
    }
    EXPECT_EQ(heard, 0);
    std::signal(SIGINT, before);
}

TEST(Interruption, WhatIsIgnoredStaysIgnored) {
    const auto before = std::signal(SIGINT, SIG_IGN);
    {
        const Interruption interruption;
        std::raise(SIGINT);
        EXPECT_NO_THROW(interruption.watching({})(0.5));
    }
    std::raise(SIGINT);
    std::signal(SIGINT, before);
}

}  // namespace
