// A minimal outside program: links the installed library and prints a
// version line and a failure report.
#include <iostream>

#include <varimo/varimo.h>

int main() {
  std::cout << Varimo::VarimoVersion() << '\n';
  Varimo::ZqStatModelResult result;
  result.SetFailureTypeAndWhereFailed(Varimo::ZqStatModelFailureType::ColumnNotFound, "consumer");
  std::cout << result.ReportStatResultDetails();
  return result.IsSuccessful() ? 1 : 0;
}
