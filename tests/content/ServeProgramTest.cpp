// kestrin-serve as a person runs it.

#include "Client.h"
#include "content/GPointer.h"
#include "support/TemporaryFolder.h"

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace kestrin::content {
namespace {

/// The program, while it runs or after.
class Program {
  public:
    explicit Program(const std::vector<std::string>& arguments) {
        std::vector<const char*> raw{KESTRIN_SERVE};
        for (const std::string& argument : arguments)
            raw.push_back(argument.c_str());
        raw.push_back(nullptr);
        m_process = GPointer<GSubprocess>::adopt(g_subprocess_newv(
            raw.data(), GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE),
            nullptr));
    }
    ~Program() { g_subprocess_force_exit(m_process.get()); }

    /// The first line that it prints.
    std::string line() {
        const auto stream = GPointer<GDataInputStream>::adopt(
            g_data_input_stream_new(g_subprocess_get_stdout_pipe(m_process.get())));
        g_filter_input_stream_set_close_base_stream(G_FILTER_INPUT_STREAM(stream.get()), FALSE);
        const GText text(g_data_input_stream_read_line(stream.get(), nullptr, nullptr, nullptr));
        return text ? text.get() : "";
    }
    void send(int signal) { g_subprocess_send_signal(m_process.get(), signal); }
    /// Waits for its end. -1 when it was killed.
    int status() {
        char *out = nullptr, *err = nullptr;
        g_subprocess_communicate_utf8(m_process.get(), nullptr, nullptr, &out, &err, nullptr);
        const GText ownedOut(out), ownedErr(err);
        printed = out ? out : "";
        said = err ? err : "";
        return g_subprocess_get_if_exited(m_process.get()) ? g_subprocess_get_exit_status(m_process.get())
                                                           : -1;
    }

    std::string printed, said;

  private:
    GPointer<GSubprocess> m_process;
};

TEST(ServeProgram, SaysInOneLineWhatIsWrong) {
    const test::TemporaryFolder folder;
    folder.write("application.json", R"({"title": 7})");
    const std::string name = folder.path().string();
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, "which application folder"},
        {{name, "more"}, "'more'"},
        {{name, "--nonsense"}, "--nonsense"},
        {{name, "--port", "many"}, "many"},
        {{name, "--port", "65536"}, "65536"},
        {{name, "--port", "0"}, name + "/application.json: title: expected a text"},
        {{name, "--port", "0", "--address", "localhost"}, "\"localhost\" is not an IP address"},
        {{"/no/such/folder", "--port", "0"}, "/no/such/folder/application.json: cannot be read"},
    };
    for (const auto& [arguments, mention] : cases) {
        Program program(arguments);
        EXPECT_GT(program.status(), 0) << mention;
        EXPECT_EQ(program.said.find("kestrin-serve: "), 0u) << program.said;
        EXPECT_NE(program.said.find(mention), std::string::npos) << program.said;
        EXPECT_EQ(std::count(program.said.begin(), program.said.end(), '\n'), 1) << program.said;
        EXPECT_EQ(program.printed, "");
    }
    Program help({"--help"});
    EXPECT_EQ(help.status(), 0);
    for (const char* const option : {"--port", "--address", "--host-name", "--key", "--quiet", "--version"})
        EXPECT_NE(help.printed.find(option), std::string::npos) << option;
}

TEST(ServeProgram, ServesTheSampleUntilItIsInterrupted) {
    const test::TemporaryFolder folder;
    std::filesystem::copy(KESTRIN_SHARE "/applications/demo", folder.path(),
                          std::filesystem::copy_options::recursive);
    folder.write("template/index.html", "the page");
    for (const int signal : {SIGINT, SIGTERM}) {
        Program program({folder.path().string(), "--port", "0"});
        const boost::json::value line = boost::json::parse(program.line());
        const auto told = [&](const char* name) { return std::string(line.at(name).as_string()); };
        const std::string address = told("address");
        EXPECT_EQ(told("hostMap"), "127.0.0.1=" + address);
        const std::string record = "/api/v2/application/" + told("application");
        Client client;
        EXPECT_EQ(client.get(told("template")).body, "the page");
        const Answer key = client.get("https://" + address + record + "/appkey");
        EXPECT_EQ(boost::json::parse(key.body).at("data").at("appkey"), line.at("key"));
        EXPECT_EQ(client.request("POST", "https://" + address + "/api/v2/triggersnap/find").status, 400u);
        program.send(signal);
        EXPECT_EQ(program.status(), 0);
        EXPECT_NE(program.said.find(" GET " + record + "/appkey 200\n"), std::string::npos) << program.said;
    }
    Program keyOnly({folder.path().string(), "--port", "0", "--key", "--quiet"});
    EXPECT_EQ(keyOnly.line().find_first_of("{ "), std::string::npos);
    keyOnly.send(SIGTERM);
    EXPECT_EQ(keyOnly.status(), 0);
    EXPECT_EQ(keyOnly.said, "");
}

} // namespace
} // namespace kestrin::content
