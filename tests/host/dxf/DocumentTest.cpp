#include "host/dxf/Document.h"

#include <gtest/gtest.h>

#include "host/dxf/Edit.h"

namespace {

using namespace host::dxf;

TEST(Document, SmallestDrawingHasItsRecordsAndBytes) {
    const std::string bytes = "0\nSECTION\n2\nENTITIES\n0\nLINE\n5\n2F\n0\nENDSEC\n0\nEOF\n";
    const auto document = Document::fromBytes(bytes, "small.dxf");
    ASSERT_EQ(document->size(), 4U);
    EXPECT_EQ(document->type(1), "LINE");
    EXPECT_EQ(document->section(1), Section::entities);
    EXPECT_EQ(document->find(0x2F), RecordIndex{1});
    EXPECT_EQ(apply(*document, {}), bytes);
}

}  // namespace
