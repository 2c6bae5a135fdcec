// Drawings for tests, made from short texts: "TEXT|5 2F|8 roads|10 1.0|20 2.0|40 2.5|1 Name" is a
// record of type TEXT with handle 2F, each following piece a group code, a blank and the value.
#pragma once

#include <dbmain.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/Document.h"

namespace host::test {

class DrawingText {
  public:
    // `release` as $ACADVER says it; empty for a drawing without a header.
    explicit DrawingText(std::string release = "AC1015") : release_(std::move(release)) {}

    DrawingText& variable(std::string_view nameAndGroups);  // "$CLAYER|8 roads"
    DrawingText& declare(std::string_view record);          // a CLASS
    DrawingText& layer(std::string_view name, int flags = 0, int color = 7);
    DrawingText& table(std::string_view name, const std::vector<std::string>& records);
    DrawingText& block(std::string_view name, const std::vector<std::string>& entities,
                       std::string_view groups = "70 0|10 0.0|20 0.0|30 0.0");
    DrawingText& entity(std::string_view record);
    DrawingText& object(std::string_view record);

    std::string ascii() const;
    // `wideCodes` as releases from R13 on have them.
    std::string binary(bool wideCodes = true) const;

    std::shared_ptr<const dxf::Document> document() const;
    std::unique_ptr<AcDbDatabase> database() const;
    std::unique_ptr<AcDbDatabase> binaryDatabase(bool wideCodes = true) const;

  private:
    struct Tag {
        int code;
        std::string value;
    };
    static void take(std::vector<Tag>& tags, std::string_view record, bool typed);
    static void frame(std::vector<Tag>& tags, std::string_view section,
                      const std::vector<Tag>& content);
    std::vector<Tag> all() const;

    std::string release_;
    std::vector<Tag> header_, classes_, layers_, tables_, blocks_, entities_, objects_;
};

// The lines of a record of an edited drawing, "code value" each, for comparing.
std::vector<std::string> groupsOf(const dxf::Document& document, dxf::RecordIndex record);

// What saving the database would write.
std::string savedBytes(const AcDbDatabase& database);

}  // namespace host::test
