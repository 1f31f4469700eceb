// varimo._core: the library's models as Python sees them. No logic lives
// here: conversions, argument checks, and the GIL released around every
// call that trains or predicts.
#include <pybind11/pybind11.h>

#include "acquisition.h"
#include "messages.h"
#include "molecules.h"
#include "vectors.h"
#include "varimo/version.h"

PYBIND11_MODULE(_core, m) {
  m.doc() = "The compiled core of the varimo package; use the classes of varimo instead.";
  VarimoPython::InstallMessageQueue();
  VarimoPython::BindMessages(m);
  VarimoPython::BindAcquisition(m);
  VarimoPython::BindMolecules(m);
  VarimoPython::BindReports(m);
  VarimoPython::BindScreen(m);
  VarimoPython::BindVectors(m);
  m.attr("__version__") = Varimo::VarimoGetVersion();
}
