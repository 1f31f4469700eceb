// Umbrella header of the statistics layer and the kriging engine.
#pragma once

#include "varimo/version.h"

#include "varimo/foundations/stat_model_result.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
