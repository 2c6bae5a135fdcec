// Builds the index of a drawing from its groups, one after the other; shared by the readers of the
// two forms.
#ifndef HOST_DXF_INDEXBUILDER_H
#define HOST_DXF_INDEXBUILDER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "host/dxf/Index.h"

namespace host::dxf {

class IndexBuilder {
  public:
    // `bytes` are followed by kPadding bytes of 0.
    IndexBuilder(std::string_view bytes, const std::string& name, const Progress& progress);

    // Takes the next group: its code, its value undecoded, the offset of its first byte.
    void group(int code, std::string_view value, std::uint64_t offset) {
        if (code == 0) {
            startRecord(value, offset);
        } else if (code == wantedHandle_) {
            takeHandle(code, value);
        } else if (expectName_) {
            nameSection(code, value);
        } else if (code > 999 || code == 101) {
            wantedHandle_ = kNoHandle;
        }
        ++groups_;
    }

    std::uint64_t groupCount() const { return groups_; }
    bool ended() const { return ended_; }  // EOF was taken

    // A text value that holds bytes above 7F: told when they don't suit the file's encoding. Those
    // of the header are looked at when it is complete, for it is the header that names the
    // encoding.
    void checkEncoding(std::string_view value) {
        if (section_ != Section::header && !index_.records.empty()) {
            checkEncoding(value, valuePosition());
        }
    }

    // A value that is not of its code's type.
    void oddValue(int code, std::string_view value, const char* expected);

    // A chunk after a group that announces its length: told when the file can't hold so much.
    void checkAnnouncedLength(std::int64_t length);

    // The bytes after EOF, or, without EOF, blank ones at the end.
    void finish(std::uint64_t groupsEnd);

    void find(Position where, std::string message);
    [[noreturn]] void fail(Position where, std::string expected, std::string found) const;

    // Where the next group's code or value stands; binary: by `offset`.
    Position codePosition(std::uint64_t offset) const;
    Position valuePosition() const;
    void setValueOffset(std::uint64_t offset) { valueOffset_ = offset; }

    void reportProgress(std::uint64_t offset) {
        if (offset >= nextReport_) tellProgress(offset);
    }

    Index& index() { return index_; }
    Index take() { return std::move(index_); }
    std::string_view bytes() const { return bytes_; }

  private:
    static constexpr int kNoHandle = -1;

    void startRecord(std::string_view value, std::uint64_t offset);
    void takeHandle(int code, std::string_view value);
    void nameSection(int code, std::string_view value);
    void closeRecord(std::uint64_t end);
    void readHeader(std::uint64_t end);
    void checkEncoding(std::string_view value, Position where);
    Position recordPosition(const Record& record) const;
    void pushRecord(std::uint64_t offset);
    void startSection(std::string_view type);
    void tellProgress(std::uint64_t offset);
    void findDuplicates();

    std::string_view bytes_;
    const std::string& name_;
    const Progress& progress_;
    Index index_;
    std::uint64_t groups_ = 0;
    std::uint64_t valueOffset_ = 0;
    std::uint64_t nextReport_;
    Section section_ = Section::none;
    int wantedHandle_ = kNoHandle;
    bool expectName_ = false;
    bool inSection_ = false;
    bool handleDue_ = false;  // the open record should have a handle, if the release has them
    bool ended_ = false;
    bool sawHeader_ = false;
    bool sawRelease_ = false;
    bool toldOutside_ = false;
    bool toldEncoding_ = false;
};

// Whether nothing but blanks, line ends, NULs and control-Z, in which text files of old end, is
// left.
bool isBlank(std::string_view bytes);

// The readers of the two forms: give all groups of the builder's bytes to it, check their layout.
void scanAscii(IndexBuilder& builder);
void scanBinary(IndexBuilder& builder);

}  // namespace host::dxf

#endif
