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

std::string shown(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed).ptr;
    return {digits.begin(), end};
}

/// Not a number when the value is none.
double asNumber(const json::value& value) {
    json::error_code error;
    return value.is_number() ? value.to_number<double>(error) : NAN;
}

Vector3 asVector(const std::vector<double>& numbers) {
    return {float(numbers[0]), float(numbers[1]), float(numbers[2])};
}

} // namespace

Field::Field(const json::value& value, std::string path) : m_value(&value), m_path(std::move(path)) {}

void Field::fail(std::string_view message) const {
    throw FieldError((m_path.empty() ? "" : m_path + ": ") + std::string(message));
}

Field Field::member(const json::value& value, std::string_view key) const {
    return Field(value, (m_path.empty() ? "" : m_path + ".") + std::string(key));
}

const json::object& Field::object() const {
    const json::object* object = m_value->if_object();
    if (!object)
        fail("expected an object");
    return *object;
}

void Field::allowKeys(std::initializer_list<std::string_view> keys) const {
    for (const auto& entry : object())
        if (std::find(keys.begin(), keys.end(), std::string_view(entry.key())) == keys.end())
            member(entry.value(), entry.key()).fail("unknown field");
}

std::optional<Field> Field::find(std::string_view key) const {
    const json::value* value = object().if_contains(key);
    return value ? std::optional(member(*value, key)) : std::nullopt;
}

Field Field::operator[](std::string_view key) const {
    const std::optional<Field> found = find(key);
    if (!found)
        member(*m_value, key).fail("missing");
    return *found;
}

std::string Field::anyText() const {
    const json::string* text = m_value->if_string();
    if (!text || text->find('\0') != json::string::npos)
        fail("expected a text");
    return {text->begin(), text->end()};
}

std::string Field::text() const {
    std::string text = anyText();
    if (text.empty())
        fail("expected a text");
    return text;
}

bool Field::flag() const {
    if (!m_value->is_bool())
        fail("expected true or false");
    return m_value->get_bool();
}

double Field::number(double least, double most) const {
    const double value = asNumber(*m_value);
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

std::vector<double> Field::allNumbers(double least, double most, std::string_view expected) const {
    std::vector<double> values;
    values.reserve(m_value->get_array().size());
    for (const json::value& item : m_value->get_array()) {
        const double value = asNumber(item);
        if (!(value >= least && value <= most))
            fail(expected);
        values.push_back(value);
    }
    return values;
}

std::vector<double> Field::numbers(std::size_t count, double least, double most,
                                   std::string_view expected) const {
    if (!m_value->is_array() || m_value->get_array().size() != count)
        fail(expected);
    return allNumbers(least, most, expected);
}

std::vector<double> Field::groups(std::size_t group, std::size_t most, double least, double greatest,
                                  std::string_view expected) const {
    if (!m_value->is_array() || m_value->get_array().size() > most ||
        m_value->get_array().size() % group != 0)
        fail(expected);
    return allNumbers(least, greatest, expected);
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
    return numbers(count, kThin, kFar,
                   count == 2 ? "expected two positive numbers" : "expected three positive numbers");
}

} // namespace kestrin::session
