#include "linux/web/Sandbox.h"

#include "MainLoop.h"
#include "support/FakeLog.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace kestrin::gtk {
namespace {

/// Sets an environment variable, or takes it out, for as long as it lives.
class Environment {
  public:
    Environment(const char* name, const char* value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        set(value);
    }
    ~Environment() { set(m_before ? m_before->c_str() : nullptr); }

  private:
    void set(const char* value) { value ? setenv(m_name, value, 1) : unsetenv(m_name); }
    const char* const m_name;
    std::optional<std::string> m_before;
};

TEST(Sandbox, ARefusalIsExplained) {
    constexpr const char* kSwitch = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";
    const auto linesAfter = [](const char* program) {
        const auto log = std::make_shared<test::FakeLog>();
        checkSandbox(log, program);
        EXPECT_TRUE(test::runUntil([&] { return log.use_count() == 1; }));
        return log->lines();
    };
    {
        const Environment unset(kSwitch, nullptr);
        EXPECT_TRUE(linesAfter("/bin/true").empty());
        for (const char* program : {"/bin/false", "/no/such/program"}) {
            const auto lines = linesAfter(program);
            ASSERT_EQ(lines.size(), 1U) << program;
            EXPECT_NE(lines[0].find("user namespaces"), std::string::npos);
            EXPECT_NE(lines[0].find(kSwitch), std::string::npos);
        }
    }
    const Environment disabled(kSwitch, "1");
    EXPECT_TRUE(linesAfter("/bin/false").empty());
}

} // namespace
} // namespace kestrin::gtk
