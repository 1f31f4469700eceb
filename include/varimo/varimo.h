// Umbrella header of the statistics layer and the kriging engine.
#pragma once

#include "varimo/version.h"

#include "varimo/foundations/stat_model_result.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"

#include "varimo/tables/column_append.h"
#include "varimo/tables/column_statistics.h"
#include "varimo/tables/data_table.h"
#include "varimo/tables/data_table_column_kinds.h"
#include "varimo/tables/data_table_files.h"
#include "varimo/tables/data_table_row_predicates.h"
#include "varimo/tables/maximal_coverage.h"
#include "varimo/tables/table_split.h"

#include "varimo/statistics/bootstrap.h"
#include "varimo/statistics/data_vector_functions.h"
#include "varimo/statistics/distance_matrix.h"
#include "varimo/statistics/histogram.h"
#include "varimo/statistics/incomplete_beta.h"
#include "varimo/statistics/independence_statistic.h"
#include "varimo/statistics/plot_points.h"
#include "varimo/statistics/sampling.h"
#include "varimo/statistics/urn_estimate.h"

#include "varimo/ranvar/nran_var.h"
#include "varimo/ranvar/nran_var_storage.h"
#include "varimo/ranvar/nran_var_types.h"
#include "varimo/ranvar/ran_var.h"
#include "varimo/ranvar/ran_var_constraints.h"
#include "varimo/ranvar/ran_var_setup.h"
#include "varimo/ranvar/ran_var_types.h"

#include "varimo/pdf/multivariate_pdfs.h"
#include "varimo/pdf/npdf_impl.h"
#include "varimo/pdf/null_pdf.h"
#include "varimo/pdf/pdf.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/pdf/univariate_pdfs.h"

#include "varimo/mixture/empirical_null.h"
#include "varimo/mixture/gauss_mix_component.h"
#include "varimo/mixture/gauss_mix_model.h"
#include "varimo/mixture/gauss_mix_param.h"

#include "varimo/numerics/matrix.h"
#include "varimo/numerics/minimizer.h"
#include "varimo/platform/minarc/newton_opt.h"

#include "varimo/smoothers/kernel_functions.h"
#include "varimo/smoothers/regression_result.h"
#include "varimo/smoothers/similarity_kernels.h"

#include "varimo/grid/two_dim_function_grid.h"

#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/variogram.h"
#include "varimo/krige/krige_options.h"
#include "varimo/krige/krige_result.h"
#include "varimo/krige/property_list.h"
#include "varimo/krige/vector_krige.h"
