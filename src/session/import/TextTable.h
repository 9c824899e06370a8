#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::session {

/// Nanoseconds on a data set's clock. Whole numbers: a double cannot tell the nanoseconds since 1970 apart.
using Stamp = std::int64_t;

constexpr double seconds(Stamp duration) { return 1e-9 * double(duration); }

/// One line of a table. What is wrong with it throws ImportError "FILE:LINE: MESSAGE".
class TableRow {
  public:
    TableRow(const std::string& file, std::size_t line, std::vector<std::string_view> cells);

    [[noreturn]] void fail(const std::string& message) const;
    std::size_t size() const { return m_cells.size(); }
    /// The row must have at least so many columns.
    void needColumns(std::size_t count) const;

    std::string_view text(std::size_t column) const { return m_cells[column]; }
    /// Between -`most` and `most`: more than any metre, radian or calibration there is.
    double number(std::size_t column, double most = 1e6) const;
    Stamp nanoseconds(std::size_t column) const;
    /// Seconds with decimals, kept to the nanosecond.
    Stamp decimalSeconds(std::size_t column) const;

  private:
    const std::string* m_file;
    std::size_t m_line;
    std::vector<std::string_view> m_cells;
};

/// A text file of lines with cells between commas or blanks. Empty lines and those that begin with # do not
/// count. Throws ImportError when the file cannot be read.
class TextTable {
  public:
    explicit TextTable(const std::filesystem::path& file);
    /// `name` stands for the file in messages.
    TextTable(std::string name, std::string text);
    TextTable(const TextTable&) = delete;
    TextTable& operator=(const TextTable&) = delete;

    const std::string& file() const { return m_file; }
    const std::vector<TableRow>& rows() const { return m_rows; } ///< at least one

  private:
    const std::string m_file, m_text;
    std::vector<TableRow> m_rows;
};

/// The whole of a text file of at most `most` bytes. Throws ImportError when it cannot be read.
std::string readText(const std::filesystem::path& file, std::size_t most);
constexpr std::size_t kMostDescription = 1'000'000; ///< bytes of a file that describes a camera

} // namespace kestrin::session
