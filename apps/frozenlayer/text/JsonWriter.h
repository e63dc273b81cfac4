#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qnl::text {

/// Composes one JSON document, indented by two blanks per level. Calls mirror the document from top to
/// bottom; inside an object every value is preceded by its Key.
class JsonWriter {
public:
    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }
    void Key(std::string_view key);
    /// Bytes that are not UTF-8 become the replacement character.
    void Value(std::string_view text);
    void Value(const char* text) { Value(std::string_view(text)); }
    void Value(std::int64_t number);
    void Value(bool truth);
    /// The shortest text that reads back as the same number; null when it is not finite.
    void Value(double number);

    /// The document so far, with a closing line end.
    std::string Text() const { return text_ + "\n"; }

private:
    void Begin(char bracket);
    void End(char bracket);
    void Separate();
    void BreakLine();

    std::string text_;
    std::vector<bool> hasEntries_;
    bool afterKey_ = false;
};

}  // namespace qnl::text
