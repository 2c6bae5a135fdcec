#include <acestext.h>
#include <acutads.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/dxf/Codes.h"
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

namespace {

using host::editor::ValueKind;

// The kind for a group that the format defines: what its value is, but for whole points, whose
// other coordinates are no elements of their own, and names of entities.
ValueKind kindByFormat(int code) {
    const bool point = (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 ||
                       (code >= 1010 && code <= 1013);
    if (point) return ValueKind::point;
    const bool name =
        (code >= 330 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481;
    if (name) return ValueKind::name;
    switch (host::dxf::valueType(code)) {
        case host::dxf::ValueType::real:
            return ValueKind::real;
        case host::dxf::ValueType::int16:
        case host::dxf::ValueType::boolean:
            return ValueKind::int16;
        case host::dxf::ValueType::int32:
            return ValueKind::int32;
        case host::dxf::ValueType::int64:
            return ValueKind::int64;
        case host::dxf::ValueType::chunk:
            return ValueKind::binary;
        default:
            return ValueKind::text;
    }
}

}  // namespace

TEST(ResultBuffer, KindsOfAllGroupCodesAreThoseOfTheFormat) {
    int known = 0;
    for (int code = 0; code <= 1071; ++code) {
        const ValueKind kind = host::editor::valueKind(code);
        if (host::dxf::isKnownCode(code)) {
            EXPECT_EQ(static_cast<int>(kind), static_cast<int>(kindByFormat(code))) << code;
            ++known;
        } else {
            EXPECT_EQ(kind, ValueKind::unknown) << code;
        }
    }
    EXPECT_GT(known, 400);
}

TEST(ResultBuffer, KindsOfTheHostsOwnTypes) {
    const struct {
        int type;
        int number;
        ValueKind kind;
    } types[] = {{RTNONE, 5000, ValueKind::none},
                 {RTREAL, 5001, ValueKind::real},
                 {RTPOINT, 5002, ValueKind::point},
                 {RTSHORT, 5003, ValueKind::int16},
                 {RTANG, 5004, ValueKind::real},
                 {RTSTR, 5005, ValueKind::text},
                 {RTENAME, 5006, ValueKind::name},
                 {RTPICKS, 5007, ValueKind::name},
                 {RTORINT, 5008, ValueKind::real},
                 {RT3DPOINT, 5009, ValueKind::point},
                 {RTLONG, 5010, ValueKind::int32},
                 {RTVOID, 5014, ValueKind::none},
                 {RTLB, 5016, ValueKind::none},
                 {RTLE, 5017, ValueKind::none},
                 {RTDOTE, 5018, ValueKind::none},
                 {RTNIL, 5019, ValueKind::none},
                 {RTDXF0, 5020, ValueKind::text},
                 {RTT, 5021, ValueKind::none},
                 {RTLONG_PTR, 5030, ValueKind::int64},
                 {RTINT64, 5031, ValueKind::int64},
                 {-4, -4, ValueKind::text},
                 {-3, -3, ValueKind::none},
                 {-2, -2, ValueKind::name},
                 {-1, -1, ValueKind::name},
                 {-5, -5, ValueKind::unknown},
                 {1072, 1072, ValueKind::unknown},
                 {4711, 4711, ValueKind::unknown},
                 {5032, 5032, ValueKind::unknown}};
    for (const auto& each : types) {
        EXPECT_EQ(each.type, each.number);
        EXPECT_EQ(static_cast<int>(host::editor::valueKind(each.type)), static_cast<int>(each.kind))
            << each.type;
    }
}

TEST(StatusText, NamesOfTheCodes) {
    EXPECT_STREQ(acadErrorStatusText(Acad::eOk), L"eOk");
    EXPECT_STREQ(acadErrorStatusText(Acad::eOnLockedLayer), L"eOnLockedLayer");
    EXPECT_STREQ(acadErrorStatusText(Acad::eInetOk), L"eInetOk");
    EXPECT_STREQ(acadErrorStatusText(static_cast<Acad::ErrorStatus>(19)), L"Unknown");
}
