#pragma once

#include "session/Geometry.h"

#include <boost/json/fwd.hpp>

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::session {

/// What is wrong with a document, beginning with the path of the field.
struct FieldError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A value in a JSON document, with the path to it. Every reading checks what it finds and throws FieldError.
/// The document must outlive it.
class Field {
  public:
    explicit Field(const boost::json::value& value, std::string path = {});

    /// Throws "PATH: MESSAGE".
    [[noreturn]] void fail(std::string_view message) const;

    /// The value must be an object without any other key.
    void allowKeys(std::initializer_list<std::string_view> keys) const;
    /// A member that must be there.
    Field operator[](std::string_view key) const;
    std::optional<Field> find(std::string_view key) const;

    /// A text without NUL.
    std::string text() const;
    std::string anyText() const; ///< may be empty
    bool flag() const;
    /// Between the two bounds, which the message names.
    double number(double least, double most) const;
    std::vector<Field> items(std::size_t most) const;
    std::vector<double> numbers(std::size_t count, double least, double most,
                                std::string_view expected) const;
    /// At most `most` of them, in groups of `group`.
    std::vector<double> groups(std::size_t group, std::size_t most, double least, double greatest,
                               std::string_view expected) const;

    /// Three coordinates of at most a kilometre.
    Vector3 point() const;
    Vector3 color() const;
    /// A vector that is not zero, made a unit.
    Vector3 direction() const;
    /// Positive lengths of at most a kilometre.
    float meters() const;
    std::vector<double> sizes(std::size_t count) const; ///< two or three

  private:
    Field member(const boost::json::value& value, std::string_view key) const;
    const boost::json::object& object() const;
    std::vector<double> allNumbers(double least, double most, std::string_view expected) const;

    const boost::json::value* m_value;
    std::string m_path;
};

} // namespace kestrin::session
