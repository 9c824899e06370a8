#include "content/Field.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <algorithm>

namespace kestrin::content {

void Field::refuse(const std::string& why) const {
    throw FieldError(m_name.empty() ? why : m_name + ": " + why);
}

std::string Field::text() const {
    if (!m_value->is_string() || m_value->get_string().empty())
        refuse("expected a text that is not empty");
    return std::string(m_value->get_string());
}

double Field::positiveNumber() const {
    const double value = m_value->is_number() ? m_value->to_number<double>() : 0;
    if (!(value > 0))
        refuse("expected a number above 0");
    return value;
}

void Field::eachItem(const std::function<void(const Field&)>& read) const {
    if (!m_value->is_array())
        refuse("expected a list");
    std::size_t index = 0;
    for (const boost::json::value& item : m_value->get_array())
        read(Field(item, m_name + "[" + std::to_string(index++) + "]"));
}

void Field::allowOnly(std::initializer_list<std::string_view> names) const {
    for (const auto& [name, value] : object())
        if (std::find(names.begin(), names.end(), std::string_view(name)) == names.end())
            refuse("there is no field \"" + std::string(name) + "\"");
}

bool Field::has(std::string_view name) const { return object().contains(name); }

Field Field::member(std::string_view name) const {
    const boost::json::value* const value = object().if_contains(name);
    if (!value)
        refuse("the field \"" + std::string(name) + "\" is missing");
    return Field(*value, m_name.empty() ? std::string(name) : m_name + "." + std::string(name));
}

const boost::json::object& Field::object() const {
    if (!m_value->is_object())
        refuse("expected an object");
    return m_value->get_object();
}

} // namespace kestrin::content
