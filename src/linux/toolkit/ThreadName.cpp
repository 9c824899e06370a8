#include "linux/toolkit/ThreadName.h"

#include <pthread.h>

namespace kestrin::gtk {

void nameThread(const std::string& name) { pthread_setname_np(pthread_self(), name.substr(0, 15).c_str()); }

} // namespace kestrin::gtk
