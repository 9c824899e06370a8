#pragma once

#include <functional>

namespace kestrin {

/// For the host application: is there a connection? Thread: main.
class ConnectionChecker {
  public:
    using Callback = std::function<void()>;

    /// Whether there is a way to the internet and to a well-known public host. Returns at once.
    static bool checkConnection();
    /// Calls one of the two once it is known whether that host can be reached, and again whenever that
    /// changes. A later call puts its callbacks in the place of these; when the checking runs already, they
    /// hear of the next change only.
    static void checkConnectionWithCallback(Callback success, Callback failure);
    /// Shows an alert that there is no connection.
    static void showConnectionMessage();

    ConnectionChecker() = delete;
};

} // namespace kestrin
