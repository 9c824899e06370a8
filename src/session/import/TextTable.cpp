#include "session/import/TextTable.h"

#include "session/FileBytes.h"
#include "session/import/ImportError.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace kestrin::session {

namespace {

constexpr std::size_t kMaximumBytes = 100'000'000;
constexpr std::size_t kMaximumRows = 2'000'000;
constexpr std::string_view kBetween = ", \t\r";
constexpr Stamp kSecond = 1'000'000'000;
constexpr Stamp kLongest = 9'000'000'000; // seconds that fit a stamp

template <class T>
std::optional<T> parse(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

std::vector<std::string_view> cellsOf(std::string_view line) {
    std::vector<std::string_view> cells;
    for (auto from = line.find_first_not_of(kBetween); from != line.npos;) {
        const auto to = line.find_first_of(kBetween, from);
        cells.push_back(line.substr(from, to - from));
        from = line.find_first_not_of(kBetween, to);
    }
    return cells;
}

bool isPlainDecimal(std::string_view text) {
    return text.find_first_not_of("0123456789.") == text.npos && text.find('.') == text.rfind('.');
}

/// The nanoseconds in the digits behind the point.
std::optional<Stamp> fraction(std::string_view digits) {
    std::string nine(digits.substr(0, 9));
    nine.resize(9, '0');
    return parse<Stamp>(nine);
}

} // namespace

std::string readText(const std::filesystem::path& file, std::size_t most) {
    std::optional<std::string> text = readFile(file, most);
    if (!text)
        throw ImportError(file.string() + ": cannot be read");
    return *std::move(text);
}

TableRow::TableRow(const std::string& file, std::size_t line, std::vector<std::string_view> cells)
    : m_file(&file), m_line(line), m_cells(std::move(cells)) {}

void TableRow::fail(const std::string& message) const {
    throw ImportError(*m_file + ":" + std::to_string(m_line) + ": " + message);
}

void TableRow::needColumns(std::size_t count) const {
    if (size() < count)
        fail("expected " + std::to_string(count) + " columns, found " + std::to_string(size()));
}

double TableRow::number(std::size_t column, double most) const {
    const auto value = parse<double>(text(column));
    if (!value || !(std::abs(*value) <= most))
        fail((value && std::isfinite(*value) ? "expected a smaller number, not '"
                                             : "expected a number, not '") +
             std::string(text(column)) + "'");
    return *value;
}

Stamp TableRow::nanoseconds(std::size_t column) const {
    const auto value = parse<Stamp>(text(column));
    if (!value || *value < 0)
        fail("expected a time in nanoseconds, not '" + std::string(text(column)) + "'");
    return *value;
}

Stamp TableRow::decimalSeconds(std::size_t column) const {
    const std::string_view cell = text(column);
    const auto point = cell.find('.');
    const auto whole = parse<Stamp>(cell.substr(0, point));
    if (whole && isPlainDecimal(cell) && *whole <= kLongest)
        return *whole * kSecond + (point == cell.npos ? 0 : *fraction(cell.substr(point + 1)));
    return Stamp(std::llround(number(column, double(kLongest)) * double(kSecond)));
}

TextTable::TextTable(const std::filesystem::path& file)
    : TextTable(file.string(), readText(file, kMaximumBytes)) {}

TextTable::TextTable(std::string name, std::string contents)
    : m_file(std::move(name)), m_text(std::move(contents)) {
    const std::string_view text = m_text;
    std::size_t number = 0;
    for (std::size_t from = 0; from < text.size();) {
        const auto to = std::min(text.find('\n', from), text.size());
        auto cells = cellsOf(text.substr(from, to - from));
        ++number;
        if (!cells.empty() && cells.front().front() != '#')
            m_rows.emplace_back(m_file, number, std::move(cells));
        if (m_rows.size() > kMaximumRows)
            throw ImportError(m_file + ": has more than " + std::to_string(kMaximumRows) + " lines");
        from = to + 1;
    }
    if (m_rows.empty())
        throw ImportError(m_file + ": is empty");
}

} // namespace kestrin::session
