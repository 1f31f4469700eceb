// The library's messages on their way to Python's logging: the error
// handler's sink and the output sink queue them (from any thread, the GIL
// not held), and the Python layer drains the queue after each call into
// the logger "varimo". Both sinks are the process's: they are installed
// once, when the module loads, before any call can start a thread.
#pragma once

#include <pybind11/pybind11.h>

namespace VarimoPython {

// Installs the queueing sink; called once when the module loads.
void InstallMessageQueue();
void BindMessages(pybind11::module_& m);

}  // namespace VarimoPython
