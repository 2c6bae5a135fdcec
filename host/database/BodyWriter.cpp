#include "host/database/BodyWriter.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace host::database {

namespace {

// The tolerances of the modeller, for lengths and for directions.
constexpr double kLengthTolerance = 9.9999999999999995e-7;
constexpr double kDirectionTolerance = 1e-10;
constexpr const char* kProduct = "orlinth";
constexpr const char* kDate = "Sat Jan  1 00:00:00 2000";  // always: equal bodies have equal bytes

std::string decimals(double value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value == 0.0 ? 0.0 : value);
    return std::string(digits, end.ptr);
}

// What stands before a value of the binary form.
enum Tag : unsigned char {
    kInteger = 0x04,
    kReal = 0x06,
    kText = 0x07,
    kSecond = 0x0A,
    kFirst = 0x0B,
    kReference = 0x0C,
    kTypeEnd = 0x0D,  // the last word of a record's type
    kTypeWord = 0x0E,
    kRecordEnd = 0x11,
    kPoint = 0x13,
    kVector = 0x14
};

}  // namespace

void BodyWriter::unbounded(int bounds) {
    for (int i = 0; i < bounds; ++i) choice("I", "F", false);
}

TextBody::TextBody()
    : lines_{"400 0 1 0 ", std::string("7 ") + kProduct + " 4 4.00 24 " + kDate + " ",
             "1 9.9999999999999995e-007 1e-010 "} {}

std::vector<std::string> TextBody::take() {
    lines_.emplace_back("End-of-ACIS-data ");
    return std::move(lines_);
}

void TextBody::begin(std::string_view type) {
    line_ = type;
    refer(kNone);  // its attributes
}

void TextBody::end() {
    word("#");
    lines_.push_back(std::move(line_));
}

void TextBody::refer(int record) {
    word("$" + std::to_string(record));
}

void TextBody::point(const AcGePoint3d& point) {
    for (const double value : {point.x, point.y, point.z}) real(value);
}

void TextBody::vector(const AcGeVector3d& vector) {
    for (const double value : {vector.x, vector.y, vector.z}) real(value);
}

void TextBody::real(double value) {
    word(decimals(value));
}

void TextBody::choice(const char* first, const char* second, bool isSecond) {
    word(isSecond ? second : first);
}

void TextBody::word(std::string_view word) {
    line_ += ' ';
    line_ += word;
}

BinaryBody::BinaryBody() : bytes_("ACIS BinaryFile") {
    constexpr int version = 21800;
    constexpr int unknown = 0;   // the number of records, which nobody needs
    constexpr int entities = 2;  // the body and the modeller's version
    constexpr int flags = 12;
    for (const int number : {version, unknown, entities, flags}) integer(number);
    text(kText, kProduct);
    text(kText, "ACIS 218.00 NT");
    text(kText, kDate);
    real(1.0);  // units in millimetres
    real(kLengthTolerance);
    real(kDirectionTolerance);
    beginRecord("asmheader");
    text(kText, "208.0.4.7009");
    end();
}

std::string BinaryBody::take() {
    typeWords("End-of-ASM-data");
    return std::move(bytes_);
}

void BinaryBody::begin(std::string_view type) {
    beginRecord(type);
    refer(kNone);  // its pattern
}

// Its attributes and its number in a history that it doesn't have.
void BinaryBody::beginRecord(std::string_view type) {
    typeWords(type);
    refer(kNone);
    tag(kInteger);
    integer(-1);
}

void BinaryBody::end() {
    tag(kRecordEnd);
}

void BinaryBody::refer(int record) {
    tag(kReference);
    integer(record == kNone ? kNone : record + 1);
}

void BinaryBody::point(const AcGePoint3d& point) {
    tag(kPoint);
    for (const double value : {point.x, point.y, point.z}) raw(value);
}

void BinaryBody::vector(const AcGeVector3d& vector) {
    tag(kVector);
    for (const double value : {vector.x, vector.y, vector.z}) raw(value);
}

void BinaryBody::real(double value) {
    tag(kReal);
    raw(value);
}

void BinaryBody::choice(const char*, const char*, bool isSecond) {
    tag(isSecond ? kSecond : kFirst);
}

void BinaryBody::unknownConvexity() {
    text(kText, "unknown");
}

void BinaryBody::place(Place place) {
    tag(kInteger);
    integer(place);
}

void BinaryBody::zero() {
    tag(kInteger);
    integer(0);
}

void BinaryBody::tag(unsigned char tag) {
    bytes_ += static_cast<char>(tag);
}

void BinaryBody::integer(int value) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (int shift = 0; shift < 32; shift += 8)
        bytes_ += static_cast<char>((bits >> shift) & 0xFFU);
}

void BinaryBody::text(unsigned char type, std::string_view text) {
    tag(type);
    bytes_ += static_cast<char>(text.size());
    bytes_ += text;
}

void BinaryBody::typeWords(std::string_view type) {
    for (;;) {
        const std::size_t hyphen = type.find('-');
        const bool last = hyphen == std::string_view::npos;
        text(last ? kTypeEnd : kTypeWord, type.substr(0, hyphen));
        if (last) return;
        type.remove_prefix(hyphen + 1);
    }
}

// A zero has no sign, as in the text form.
void BinaryBody::raw(double value) {
    const double unsignedZero = value == 0.0 ? 0.0 : value;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &unsignedZero, sizeof bits);
    for (int shift = 0; shift < 64; shift += 8)
        bytes_ += static_cast<char>((bits >> shift) & 0xFFU);
}

}  // namespace host::database
