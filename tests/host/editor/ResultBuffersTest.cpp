#include <acestext.h>
#include <acutads.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/editor/ResultBuffers.h"

namespace fault = host::fault;
using host::database::Ledger;

TEST(ResultBuffer, RealAndPointBeginAtTheSameAddress) {
    resbuf element{};
    EXPECT_EQ(static_cast<void*>(&element.resval.rreal), static_cast<void*>(element.resval.rpoint));
    EXPECT_EQ(sizeof(element.resval.rlong), 4u);
    EXPECT_EQ(sizeof(ads_name), 16u);
    EXPECT_EQ(sizeof(ads_point), 24u);
}

TEST(ResultBuffer, NewOneIsClearedAndStandsInTheLedger) {
    const std::size_t before = Ledger::instance().count("result buffer");
    resbuf* element = acutNewRb(RTSTR);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->restype, RTSTR);
    EXPECT_EQ(element->rbnext, nullptr);
    EXPECT_EQ(element->resval.rstring, nullptr);
    EXPECT_EQ(Ledger::instance().count("result buffer"), before + 1);
    EXPECT_EQ(acutRelRb(element), RTNORM);
    EXPECT_EQ(Ledger::instance().count("result buffer"), before);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}

TEST(ResultBuffer, ListHasEveryKindOfValue) {
    const ads_point point = {1.0, 2.0, 3.0};
    const ads_name name = {7, 0};
    resbuf* chain = acutBuildList(RTDXF0, L"TEXT", 8, L"katu", 40, 2.5, 62, 3, RTLONG,
                                  std::int32_t{100000}, RTINT64, std::int64_t{1} << 40, 10, point,
                                  RTENAME, name, RTLB, RTLE, RTSTR, nullptr, RTNONE);
    ASSERT_NE(chain, nullptr);
    const resbuf* at = chain;
    EXPECT_EQ(at->restype, 0);
    EXPECT_STREQ(at->resval.rstring, L"TEXT");
    at = at->rbnext;
    EXPECT_EQ(at->restype, 8);
    EXPECT_STREQ(at->resval.rstring, L"katu");
    at = at->rbnext;
    EXPECT_EQ(at->resval.rreal, 2.5);
    at = at->rbnext;
    EXPECT_EQ(at->resval.rint, 3);
    at = at->rbnext;
    EXPECT_EQ(at->resval.rlong, 100000);
    at = at->rbnext;
    EXPECT_EQ(at->resval.mnInt64, std::int64_t{1} << 40);
    at = at->rbnext;
    EXPECT_EQ(at->resval.rpoint[2], 3.0);
    at = at->rbnext;
    EXPECT_EQ(at->resval.rlname[0], 7);
    at = at->rbnext->rbnext->rbnext;
    EXPECT_STREQ(at->resval.rstring, L"");
    EXPECT_EQ(at->rbnext, nullptr);
    acutRelRb(chain);
}

TEST(ResultBuffer, ZeroEndsAListLikeNone) {
    resbuf* chain = acutBuildList(RTSHORT, 1, 0);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->rbnext, nullptr);
    acutRelRb(chain);
    EXPECT_EQ(acutBuildList(RTNONE), nullptr);
}

TEST(ResultBuffer, AnUnknownTypeGivesNullAndFreesWhatWasBuilt) {
    const std::size_t before = Ledger::instance().count("result buffer");
    EXPECT_EQ(acutBuildList(RTSTR, L"a", 4711, 1, RTNONE), nullptr);
    EXPECT_EQ(Ledger::instance().count("result buffer"), before);
}

TEST(ResultBuffer, MakersGiveNullOnOrder) {
    fault::arm("acutNewRb", 2, RTERROR);
    resbuf* first = acutNewRb(RTSHORT);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(acutNewRb(RTSHORT), nullptr);
    fault::arm("acutBuildList", 1, RTERROR);
    EXPECT_EQ(acutBuildList(RTSHORT, 1, RTNONE), nullptr);
    fault::disarm();
    acutRelRb(first);
}

TEST(ResultBuffer, GivingBackFreesEvenWhenItHasToAnswerAFailure) {
    resbuf* element = acutNewRb(RTSHORT);
    fault::arm("acutRelRb", 1, RTERROR);
    EXPECT_EQ(acutRelRb(element), RTERROR);
    fault::disarm();
    EXPECT_EQ(Ledger::instance().count("result buffer"), 0u);
}

TEST(ResultBuffer, KindsOfGroupCodes) {
    using host::editor::ValueKind;
    using host::editor::valueKind;
    EXPECT_EQ(valueKind(0), ValueKind::text);
    EXPECT_EQ(valueKind(10), ValueKind::point);
    EXPECT_EQ(valueKind(18), ValueKind::point);
    EXPECT_EQ(valueKind(38), ValueKind::real);
    EXPECT_EQ(valueKind(62), ValueKind::int16);
    EXPECT_EQ(valueKind(90), ValueKind::int32);
    EXPECT_EQ(valueKind(210), ValueKind::point);
    EXPECT_EQ(valueKind(330), ValueKind::name);
    EXPECT_EQ(valueKind(-4), ValueKind::text);
    EXPECT_EQ(valueKind(1071), ValueKind::int32);
    EXPECT_EQ(valueKind(4711), ValueKind::unknown);
    EXPECT_EQ(valueKind(RT3DPOINT), ValueKind::point);
    EXPECT_EQ(valueKind(RTPICKS), ValueKind::name);
}

TEST(StatusText, NamesOfTheCodes) {
    EXPECT_STREQ(acadErrorStatusText(Acad::eOk), L"eOk");
    EXPECT_STREQ(acadErrorStatusText(Acad::eOnLockedLayer), L"eOnLockedLayer");
    EXPECT_STREQ(acadErrorStatusText(Acad::eInetOk), L"eInetOk");
    EXPECT_STREQ(acadErrorStatusText(static_cast<Acad::ErrorStatus>(19)), L"Unknown");
}
