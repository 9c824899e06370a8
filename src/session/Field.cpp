#include "session/Field.h"

#include <boost/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kestrin::session {

namespace json = boost::json;

namespace {

constexpr double kFar = 1000;  // metres: more than any room
constexpr double kThin = 1e-4; // metres: less than any sheet
constexpr std::array<std::string_view, 4> kCounts{"no", "a", "two", "three"};

std::string shown(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed).ptr;
    return {digits.begin(), end};
}

std::string asText(const json::string& text) { return {text.begin(), text.end()}; }

bool isFinite(double value) { return std::isfinite(value); }

Vector3 asVector(const std::vector<double>& numbers) {
    return {float(numbers[0]), float(numbers[1]), float(numbers[2])};
}

} // namespace

Field::Field(const json::value& value, std::string path) : m_value(&value), m_path(std::move(path)) {}

void Field::fail(std::string_view message) const {
    throw FieldError((m_path.empty() ? "" : m_path + ": ") + std::string(message));
}

void Field::allowKeys(std::initializer_list<std::string_view> keys) const {
    const json::object* object = m_value->if_object();
    if (!object)
        fail("expected an object");
    for (const auto& member : *object)
        if (std::find(keys.begin(), keys.end(), std::string_view(member.key())) == keys.end())
            Field(member.value(), (m_path.empty() ? "" : m_path + ".") + std::string(member.key()))
                .fail("unknown field");
}

std::optional<Field> Field::find(std::string_view key) const {
    const json::object* object = m_value->if_object();
    if (!object)
        fail("expected an object");
    const json::value* member = object->if_contains(key);
    if (!member)
        return {};
    return Field(*member, (m_path.empty() ? "" : m_path + ".") + std::string(key));
}

Field Field::operator[](std::string_view key) const {
    const std::optional<Field> member = find(key);
    if (!member)
        Field(*m_value, (m_path.empty() ? "" : m_path + ".") + std::string(key)).fail("missing");
    return *member;
}

std::string Field::text() const {
    const json::string* text = m_value->if_string();
    if (!text || text->empty() || text->find('\0') != json::string::npos)
        fail("expected a text");
    return asText(*text);
}

bool Field::flag() const {
    if (!m_value->is_bool())
        fail("expected true or false");
    return m_value->get_bool();
}

double Field::number(double least, double most) const {
    json::error_code error;
    const double value = m_value->is_number() ? m_value->to_number<double>(error) : NAN;
    if (!(value >= least && value <= most))
        fail("expected a number from " + shown(least) + " to " + shown(most));
    return value;
}

std::vector<Field> Field::items(std::size_t most) const {
    const json::array* array = m_value->if_array();
    if (!array)
        fail("expected a list");
    if (array->size() > most)
        fail("expected at most " + std::to_string(most) + " entries");
    std::vector<Field> fields;
    for (std::size_t i = 0; i < array->size(); ++i)
        fields.emplace_back((*array)[i], m_path + "[" + std::to_string(i) + "]");
    return fields;
}

std::vector<double> Field::numbers(std::size_t count, double least, double most,
                                   std::string_view expected) const {
    const json::array* array = m_value->if_array();
    if (!array || array->size() != count)
        fail(expected);
    std::vector<double> values;
    for (const json::value& item : *array) {
        json::error_code error;
        const double value = item.is_number() ? item.to_number<double>(error) : NAN;
        if (!isFinite(value) || value < least || value > most)
            fail(expected);
        values.push_back(value);
    }
    return values;
}

Vector3 Field::point() const {
    return asVector(numbers(3, -kFar, kFar, "expected three coordinates of at most 1000 m"));
}

Vector3 Field::color() const { return asVector(numbers(3, 0, 100, "expected three numbers from 0 to 100")); }

Vector3 Field::direction() const {
    const Vector3 vector = point();
    if (length(vector) < 1e-3F)
        fail("expected a direction, not zero");
    return normalized(vector);
}

float Field::meters() const { return float(number(kThin, kFar)); }

std::vector<double> Field::sizes(std::size_t count) const {
    return numbers(count, kThin, kFar, "expected " + std::string(kCounts[count]) + " positive numbers");
}

} // namespace kestrin::session
