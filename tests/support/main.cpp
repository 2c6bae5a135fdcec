// The entry point of every test program: fixed seeds, printed so that a failure can be repeated.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

// RapidCheck reads its parameters from the environment; a caller's own choice wins.
void FixSeeds() {
#ifdef _WIN32
    if (std::getenv("RC_PARAMS") == nullptr) _putenv("RC_PARAMS=seed=20091117");
#else
    setenv("RC_PARAMS", "seed=20091117", /*overwrite=*/0);
#endif
    std::printf("RC_PARAMS=%s\n", std::getenv("RC_PARAMS"));
}

}  // namespace

int main(int argc, char** argv) {
    FixSeeds();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
