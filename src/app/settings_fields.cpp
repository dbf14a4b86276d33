#include "app/settings_fields.h"

#include <algorithm>

#include "base/integers.h"
#include "base/runtime_fault.h"

namespace kestrel {

bool FieldReader::find(std::string_view header) {
    position_ = 0;
    std::optional<std::string> field = next();
    while (field && *field != header)
        field = next();
    return field.has_value();
}

std::string FieldReader::text() {
    std::optional<std::string> field = next();
    if (!field)
        throw RuntimeFault(Fault::InputPastEnd);
    return *std::move(field);
}

double FieldReader::number() {
    return parseLeadingNumber(text());
}

std::int16_t FieldReader::int16() {
    return toInt16(number());
}

std::int32_t FieldReader::int32() {
    return toInt32(number());
}

std::optional<std::string> FieldReader::next() {
    position_ = std::min(contents_.find_first_not_of(' ', position_), contents_.size());
    if (position_ == contents_.size())
        return std::nullopt;
    std::optional<std::string> field = contents_[position_] == '"' ? quoted() : unquoted();
    passSeparator();
    return field;
}

std::optional<std::string> FieldReader::quoted() {
    std::string text;
    for (;;) {
        const std::size_t begin = position_ + 1;
        const std::size_t end = contents_.find_first_of("\"\r\n", begin);
        if (end == std::string::npos) {
            position_ = contents_.size();
            return std::nullopt;
        }
        text.append(contents_, begin, end - begin);
        position_ = end;
        if (contents_[end] != '"')
            return text;
        ++position_;
        if (position_ == contents_.size() || contents_[position_] != '"')
            return text;
        text += '"';
    }
}

std::string FieldReader::unquoted() {
    return contents_.substr(position_, fieldEnd() - position_);
}

std::size_t FieldReader::fieldEnd() const {
    return std::min(contents_.find_first_of(",\r\n", position_), contents_.size());
}

// Whatever stands between a closing quote and the separator is dropped, so that a damaged line
// spoils no more than itself and what its stray quote swallows.
void FieldReader::passSeparator() {
    position_ = fieldEnd();
    const bool pair = contents_.compare(position_, 2, "\r\n") == 0;
    position_ = std::min(position_ + (pair ? 2 : 1), contents_.size());
}

void FieldWriter::add(std::string_view text) {
    contents_ += '"';
    for (const char character : text) {
        if (character == '"')
            contents_ += '"';
        contents_ += character == '\r' || character == '\n' ? ' ' : character;
    }
    contents_ += '"';
}

}  // namespace kestrel
