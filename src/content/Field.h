#pragma once

#include <boost/json/value.hpp>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestrin::content {

/// Ends the reading of a description; the text names the field.
struct FieldError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A value in a description that people write, with the name by which messages call it: "triggers[2].width".
/// A reading throws FieldError when the value is not of its kind.
class Field {
  public:
    /// `value` outlives the field. An empty name is the description as a whole.
    Field(const boost::json::value& value, std::string name) : m_value(&value), m_name(std::move(name)) {}

    [[noreturn]] void refuse(const std::string& why) const;

    /// A text that is not empty.
    std::string text() const;
    double positiveNumber() const;
    void eachItem(const std::function<void(const Field&)>& read) const;

    /// Refuses an object with a member of another name: a misspelt one would go unnoticed.
    void allowOnly(std::initializer_list<std::string_view> names) const;
    bool has(std::string_view name) const;
    /// The member, which has to be there.
    Field member(std::string_view name) const;

  private:
    const boost::json::object& object() const;

    const boost::json::value* m_value;
    std::string m_name;
};

} // namespace kestrin::content
