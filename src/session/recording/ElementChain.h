#pragma once

#include <gst/gst.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::session {

/// GStreamer elements one behind the other that work on the caller's thread: what goes in at the front has
/// come out at the back when push returns. Not thread-safe.
class ElementChain {
  public:
    struct Element {
        const char* name;
        std::vector<std::pair<const char*, const char*>> settings = {};
    };
    struct Output {
        std::function<void(GstCaps*)> format;   ///< before the first buffer, and when it changes
        std::function<bool(GstBuffer*)> buffer; ///< borrowed; false when it could not be used
    };
    /// Loads the code of elements beforehand, which takes a while the first time.
    static void load(std::initializer_list<const char*> elements);
    /// Empty when an element is not installed or does not take `input`, caps as text; `missing` then
    /// names it.
    static std::unique_ptr<ElementChain> make(std::initializer_list<Element> elements,
                                              const std::string& input, Output output, std::string& missing);
    ~ElementChain();
    ElementChain(const ElementChain&) = delete;
    ElementChain& operator=(const ElementChain&) = delete;

    /// Takes the buffer. False when it, or something of it, did not come through.
    bool push(GstBuffer* buffer);
    /// What the elements hold back comes out.
    void end();

  private:
    explicit ElementChain(Output output);
    bool add(const Element& element);
    bool open(const std::string& input);
    static GstFlowReturn chain(GstPad* pad, GstObject* parent, GstBuffer* buffer);
    static gboolean event(GstPad* pad, GstObject* parent, GstEvent* event);

    const Output m_output;
    GstPad *m_front, *m_back;
    std::vector<GstElement*> m_elements;
};

} // namespace kestrin::session
