#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace kestrin {

/// One value for `format`. It refers to texts and does not keep them.
class Argument {
  public:
    struct Absent {};
    using Value = std::variant<Absent, std::string_view, std::int64_t, double, char>;

    Argument(std::nullptr_t) {}
    Argument(std::nullopt_t) {}
    Argument(const char* text) {
        if (text)
            m_value = std::string_view(text);
    }
    Argument(std::string_view text) : m_value(text) {}
    Argument(const std::string& text) : m_value(std::string_view(text)) {}
    template <class Text>
    Argument(const std::optional<Text>& text) {
        if (text)
            m_value = std::string_view(*text);
    }
    Argument(char character) : m_value(character) {}
    template <class Number>
    requires std::is_arithmetic_v<Number> Argument(Number number) {
        if constexpr (std::is_floating_point_v<Number>)
            m_value = double(number);
        else
            m_value = std::int64_t(number);
    }

    const Value& value() const { return m_value; }

  private:
    Value m_value;
};

/// A pattern whose number of conversions is that of the values, checked where it is written.
template <class... Values>
class Pattern {
  public:
    template <class Text>
    requires std::convertible_to<const Text&, std::string_view>
    consteval Pattern(const Text& text) : m_text(text) {
        std::size_t conversions = 0;
        for (std::size_t i = 0; i < m_text.size(); ++i) {
            if (m_text[i] != '%')
                continue;
            if (m_text.substr(i + 1).starts_with('%'))
                ++i;
            else
                ++conversions;
        }
        if (conversions != sizeof...(Values))
            throw "the pattern does not fit the values";
    }
    std::string_view text() const { return m_text; }

  private:
    std::string_view m_text;
};

std::string formatArguments(std::string_view pattern, std::span<const Argument> arguments);
void logLine(std::string_view line);

/// Fills the values into the pattern: "%@" text ("(null)" when absent), "%f" a number with six decimals, or
/// as many as in "%.1f", "%i" and "%d" a whole number (a fraction is cut off), "%c" a character, "%#x" a
/// hexadecimal number, "%%" a percent sign. Whatever the locale, the decimal sign is a point. Thread: any.
template <class... Values>
std::string format(Pattern<std::type_identity_t<Values>...> pattern, const Values&... values) {
    const std::array<Argument, sizeof...(Values)> arguments{Argument(values)...};
    return formatArguments(pattern.text(), arguments);
}

/// Writes one line to the platform's log. Thread: any.
template <class... Values>
void log(Pattern<std::type_identity_t<Values>...> pattern, const Values&... values) {
    if constexpr (sizeof...(Values) == 0)
        logLine(pattern.text());
    else
        logLine(format<Values...>(pattern, values...));
}

} // namespace kestrin
