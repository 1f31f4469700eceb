#include "varimo/foundations/stats_data_types.h"

namespace Varimo {

namespace ZqStatVariableType {
const char* const TypeName[NumTypes] = {
    "Stat Variable Type is Unknown",  "Stat Variable Type is Nominal", "Stat Variable Type is Ordinal",
    "Stat Variable Type is Interval", "Stat Variable Type is Ratio",   "Stat Variable Type is Identifier",
};
}  // namespace ZqStatVariableType

namespace ZqStatVarDataType {
const char* const TypeName[NumTypes] = {
    "Stat Variable Data Type is Unknown", "Stat Variable Data Type is Unsigned Integer",
    "Stat Variable Data Type is Integer", "Stat Variable Data Type is Double",
    "Stat Variable Data Type is String",
};

// Written out rather than assembled at start-up so that the table is a
// constant from load, like every other text table of the library.
const char* const TwoTypeName[NumTypes * NumTypes] = {
    "Stat Two Variable Data Type is Unknown, Unknown",   "Stat Two Variable Data Type is Unknown, Unsigned",
    "Stat Two Variable Data Type is Unknown, Integer",   "Stat Two Variable Data Type is Unknown, Double",
    "Stat Two Variable Data Type is Unknown, String",    "Stat Two Variable Data Type is Unsigned, Unknown",
    "Stat Two Variable Data Type is Unsigned, Unsigned", "Stat Two Variable Data Type is Unsigned, Integer",
    "Stat Two Variable Data Type is Unsigned, Double",   "Stat Two Variable Data Type is Unsigned, String",
    "Stat Two Variable Data Type is Integer, Unknown",   "Stat Two Variable Data Type is Integer, Unsigned",
    "Stat Two Variable Data Type is Integer, Integer",   "Stat Two Variable Data Type is Integer, Double",
    "Stat Two Variable Data Type is Integer, String",    "Stat Two Variable Data Type is Double, Unknown",
    "Stat Two Variable Data Type is Double, Unsigned",   "Stat Two Variable Data Type is Double, Integer",
    "Stat Two Variable Data Type is Double, Double",     "Stat Two Variable Data Type is Double, String",
    "Stat Two Variable Data Type is String, Unknown",    "Stat Two Variable Data Type is String, Unsigned",
    "Stat Two Variable Data Type is String, Integer",    "Stat Two Variable Data Type is String, Double",
    "Stat Two Variable Data Type is String, String",
};
}  // namespace ZqStatVarDataType

}  // namespace Varimo
