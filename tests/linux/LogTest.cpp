#include "linux/toolkit/DebugTopics.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace kestrin::gtk {
namespace {

struct Written {
    GLogLevelFlags level;
    std::map<std::string, std::string> fields;
};
std::vector<Written> written;

GLogWriterOutput keep(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer) {
    Written& line = written.emplace_back(Written{level, {}});
    for (const GLogField* field = fields; field != fields + count; ++field) {
        const auto* text = static_cast<const char*>(field->value);
        line.fields[field->key] = field->length < 0 ? text : std::string(text, std::size_t(field->length));
    }
    return G_LOG_WRITER_HANDLED;
}

/// With a host's own writer, which a process can have once.
struct LogTest : testing::Test {
    static void SetUpTestSuite() { g_log_set_writer_func(keep, nullptr, nullptr); }
    LogTest() {
        g_unsetenv("G_MESSAGES_DEBUG");
        written.clear();
    }
    ~LogTest() override {
        g_unsetenv("KESTRIN_DEBUG");
        g_unsetenv("G_MESSAGES_DEBUG");
        beginDebugging(LogLevel::off, log);
    }

    StructuredLog log{LogLevel::info};
};

TEST_F(LogTest, LinesReachTheHostsWriterWithTheirFields) {
    StructuredLog(LogLevel::off).write("unheard");
    log.write("one\ntwo\r");
    debugLine(Topic::network, "three");
    ASSERT_EQ(written.size(), 2U);
    using Fields = std::map<std::string, std::string>;
    EXPECT_EQ(written[0].fields,
              (Fields{{"MESSAGE", "one\\ntwo\\r"}, {"PRIORITY", "5"}, {"GLIB_DOMAIN", "Kestrin"}}));
    EXPECT_EQ(written[0].level, G_LOG_LEVEL_MESSAGE) << "GLib's own writer shows these unasked";
    EXPECT_EQ(written[1].fields, (Fields{{"MESSAGE", "network - three"},
                                         {"PRIORITY", "7"},
                                         {"GLIB_DOMAIN", "Kestrin"},
                                         {"KESTRIN_TOPIC", "network"}}));
    EXPECT_EQ(written[1].level, G_LOG_LEVEL_MESSAGE) << "GLib's own writer would drop it";
    g_setenv("G_MESSAGES_DEBUG", "Kestrin", TRUE);
    debugLine(Topic::network, "four");
    EXPECT_EQ(written[2].level, G_LOG_LEVEL_DEBUG);
}

TEST_F(LogTest, TopicsAreTurnedOnByName) {
    struct {
        const char *variable, *messages;
        LogLevel level;
        bool web, rates;
        const char* mention = nullptr;
    } const cases[] = {{"", "", LogLevel::info, false, false},
                       {"web,camera", "", LogLevel::off, true, false},
                       {"camera rates", "", LogLevel::info, false, true},
                       {"all", "", LogLevel::info, true, true},
                       {"", "", LogLevel::debug, true, true},
                       {"", "Other Kestrin", LogLevel::info, true, true},
                       {"web,wbe", "", LogLevel::info, true, false, "wbe"}};
    for (const auto& [variable, messages, level, web, rates, mention] : cases) {
        SCOPED_TRACE(std::string(variable) + '/' + messages);
        g_setenv("KESTRIN_DEBUG", variable, TRUE);
        g_setenv("G_MESSAGES_DEBUG", messages, TRUE);
        written.clear();
        beginDebugging(level, log);
        EXPECT_EQ(isDebugged(Topic::web), web);
        EXPECT_EQ(isDebugged(Topic::rates), rates);
        ASSERT_EQ(written.size(), mention ? 1U : 0U);
        EXPECT_TRUE(!mention || written[0].fields["MESSAGE"].find(mention) != std::string::npos);
    }
}

} // namespace
} // namespace kestrin::gtk
