// The molecular layer (link Varimo::varimo_mol): molecules, their files,
// fingerprints, the property functions read from them and kriging on
// molecules.
#pragma once

#include "varimo/mol/krige_distance_options.h"
#include "varimo/mol/krige_distfxns.h"
#include "varimo/mol/krige_report.h"
#include "varimo/mol/krige_report_format.h"
#include "varimo/mol/krige_report_options.h"
#include "varimo/mol/krige_vsepr.h"
#include "varimo/mol/mol_cross_validation.h"
#include "varimo/mol/mol_data_model.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/mol/mol_model.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/mol/mol_screen.h"
#include "varimo/mol/mol_properties.h"
#include "varimo/latent/property_mol.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/molkit/molecule_files.h"
#include "varimo/platform/molkit/molecule_reader.h"
#include "varimo/platform/molkit/output_file.h"
#include "varimo/platform/printex/fingerprint.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"
