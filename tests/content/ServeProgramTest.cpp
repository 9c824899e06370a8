// kestrin-serve as a person runs it.

#include "Client.h"
#include "content/GPointer.h"
#include "support/TemporaryFolder.h"
#include "system/Program.h"

#include <boost/json.hpp>

#include <csignal>

namespace kestrin::content {
namespace {

/// The program while it serves a folder.
class Serving {
  public:
    explicit Serving(const std::string& folder)
        : m_process(GPointer<GSubprocess>::adopt(g_subprocess_new(
              GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE), nullptr,
              KESTRIN_SERVE, folder.c_str(), "--port", "0", nullptr))) {
        const auto stream = GPointer<GDataInputStream>::adopt(
            g_data_input_stream_new(g_subprocess_get_stdout_pipe(m_process.get())));
        g_filter_input_stream_set_close_base_stream(G_FILTER_INPUT_STREAM(stream.get()), FALSE);
        const GText text(g_data_input_stream_read_line(stream.get(), nullptr, nullptr, nullptr));
        line = text ? text.get() : "";
    }
    ~Serving() { g_subprocess_force_exit(m_process.get()); }

    /// Interrupts it, which it obeys, and gives its log.
    std::string end() {
        g_subprocess_send_signal(m_process.get(), SIGINT);
        char* log = nullptr;
        g_subprocess_communicate_utf8(m_process.get(), nullptr, nullptr, nullptr, &log, nullptr);
        const GText owned(log);
        EXPECT_TRUE(g_subprocess_get_successful(m_process.get()));
        return log;
    }

    std::string line; ///< the first that it prints

  private:
    const GPointer<GSubprocess> m_process;
};

TEST(ServeProgram, SaysInOneLineWhatIsWrong) {
    const test::TemporaryFolder folder;
    folder.write("application.json", R"({"title": 7})");
    const std::string name = folder.path().string();
    test::expectRefused(
        KESTRIN_SERVE,
        {{{}, "which application folder", 2},
         {{name, "--port", "65536"}, "65536", 2},
         {{name, "--port", "0"}, name + "/application.json: title: expected a text", 1},
         {{"/no/such/folder", "--port", "0"}, "/no/such/folder/application.json: cannot be read", 1}});
}

TEST(ServeProgram, ServesTheSampleUntilItIsInterrupted) {
    const test::TemporaryFolder folder;
    std::filesystem::copy(KESTRIN_SHARE "/applications/demo", folder.path(),
                          std::filesystem::copy_options::recursive);
    folder.write("template/index.html", "the page");
    Serving serving(folder.path().string());
    const boost::json::value greeting = boost::json::parse(serving.line);
    const auto told = [&](const char* name) { return std::string(greeting.at(name).as_string()); };
    const std::string address = told("address");
    EXPECT_EQ(told("hostMap"), "127.0.0.1=" + address);
    const std::string key = "/api/v2/application/" + told("application") + "/appkey";
    Client client;
    EXPECT_EQ(client.get(told("template")).body, "the page");
    EXPECT_EQ(boost::json::parse(client.get("https://" + address + key).body).at("data").at("appkey"),
              greeting.at("key"));
    EXPECT_EQ(client.request("POST", "https://" + address + "/api/v2/triggersnap/find").status, 400u);
    const std::string log = serving.end();
    EXPECT_NE(log.find(" GET " + key + " 200\n"), std::string::npos) << log;
}

} // namespace
} // namespace kestrin::content
