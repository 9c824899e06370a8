#include "services/util/Format.h"

#include "platform/Platform.h"
#include "services/util/Numbers.h"

#include <charconv>

namespace kestrin {

namespace {

constexpr int kDecimals = 6;
// The largest double has 309 digits before its point.
constexpr std::size_t kLongestNumber = 309 + 16;

void appendDecimal(std::string& out, double value, int decimals) {
    std::array<char, kLongestNumber> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals)
            .ptr;
    out.append(digits.data(), end);
}

template <class Whole>
void appendWhole(std::string& out, Whole value, int base = 10) {
    std::array<char, 24> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value, base).ptr);
}

void appendHexadecimal(std::string& out, std::uint64_t value) {
    out += "0x";
    appendWhole(out, value, 16);
}

/// One conversion of a pattern: "@", "f", ".1f", "#x", …
struct Conversion {
    char kind;
    int decimals = kDecimals;
    std::size_t length = 1; ///< of its text after the percent sign
};

Conversion readConversion(std::string_view text) {
    const bool hasDecimals = text.size() >= 3 && text[0] == '.' && text[1] >= '0' && text[1] <= '9';
    if (hasDecimals)
        return {text[2], text[1] - '0', 3};
    if (text.starts_with("#x"))
        return {'x', kDecimals, 2};
    return {text.empty() ? '%' : text[0], kDecimals, text.empty() ? 0U : 1U};
}

struct Append {
    std::string& out;
    const Conversion& conversion;

    void operator()(Argument::Absent) const { out += "(null)"; }
    void operator()(std::string_view text) const { out += text; }
    void operator()(char character) const { out += character; }
    void operator()(std::int64_t number) const {
        if (conversion.kind == 'f')
            appendDecimal(out, double(number), conversion.decimals);
        else if (conversion.kind == 'c')
            out += char(number);
        else if (conversion.kind == 'x')
            appendHexadecimal(out, std::uint64_t(number));
        else
            appendWhole(out, number);
    }
    void operator()(double number) const {
        if (conversion.kind == 'i' || conversion.kind == 'd')
            appendWhole(out, saturatingCast<std::int64_t>(number));
        else
            appendDecimal(out, number, conversion.decimals);
    }
};

std::size_t roomFor(std::string_view pattern, std::span<const Argument> arguments) {
    std::size_t room = pattern.size();
    for (const Argument& argument : arguments) {
        const auto* text = std::get_if<std::string_view>(&argument.value());
        room += text ? text->size() : 24;
    }
    return room;
}

} // namespace

std::string formatArguments(std::string_view pattern, std::span<const Argument> arguments) {
    std::string out;
    out.reserve(roomFor(pattern, arguments));
    while (true) {
        const auto percent = pattern.find('%');
        out += pattern.substr(0, percent);
        if (percent == std::string_view::npos)
            return out;
        const Conversion conversion = readConversion(pattern.substr(percent + 1));
        pattern.remove_prefix(percent + 1 + conversion.length);
        if (conversion.kind == '%' || arguments.empty()) {
            out += '%';
            continue;
        }
        std::visit(Append{out, conversion}, arguments.front().value());
        arguments = arguments.subspan(1);
    }
}

void logLine(std::string_view line) { platform::platform().log().write(line); }

} // namespace kestrin
