// Fails every test that leaves something of the host's open: an object, an iterator, a selection
// set, a result buffer. Also withdraws orders to fail that a test has left behind. Including this
// header in one source of a test program is enough.
#pragma once

#include <gtest/gtest.h>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"

namespace host::test {

class LedgerListener : public testing::EmptyTestEventListener {
  public:
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        fault::disarm();
        database::Ledger::instance().forget();
    }
    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        for (const std::string& leak : database::Ledger::instance().leaks()) {
            ADD_FAILURE() << "left open: " << leak;
        }
        fault::disarm();
        database::Ledger::instance().forget();
    }
};

inline const bool ledgerListens = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LedgerListener);
    return true;
}();

}  // namespace host::test
