#include "linux/web/WebEnvironment.h"

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

TEST(WebEnvironment, ARefusedSandboxIsExplained) {
    constexpr const char* kVariable = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";
    {
        const Environment unset(kVariable, nullptr);
        EXPECT_FALSE(sandboxProblem("/bin/true"));
        for (const char* program : {"/bin/false", "/no/such/program"}) {
            const auto problem = sandboxProblem(program);
            ASSERT_TRUE(problem) << program;
            EXPECT_NE(problem->find("user namespaces"), std::string::npos);
            EXPECT_NE(problem->find(kVariable), std::string::npos);
        }
    }
    const Environment disabled(kVariable, "1");
    EXPECT_FALSE(sandboxProblem("/bin/false"));
}

} // namespace
} // namespace kestrin::gtk
