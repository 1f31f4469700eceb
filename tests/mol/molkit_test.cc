// The Molkit layer: SD and SMILES readers on real files checked against
// RDKit's Python readers (tests/data/mol/make_molkit_refs.py), the messages
// for records left out, copies of molecules with their data, conformers and
// hydrogens, and readers on several threads in a host that logs through
// RDKit itself.
#include "varimo/platform/molkit/molecule.h"

#include <GraphMol/RWMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <RDGeneral/RDLog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "test_support.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Molkit {
namespace {

using ::testing::StartsWith;
using Mols = std::vector<std::unique_ptr<ZqMolBase>>;
using Fields = std::vector<std::pair<std::string, std::string>>;
using Texts = std::vector<std::string>;

// Weights and positions come from the same RDKit routines as the
// references; a few ulps allow for nothing but a different summation order.
constexpr std::uint64_t kSameRoutineUlps = 4;

struct ExpectedMol {
  std::size_t record;
  std::string name;
  std::size_t atoms, heavyAtoms;
  double weight;
  std::string smiles;
  Fields data;
  std::vector<std::array<double, 3>> positions;
};
struct ExpectedSDFile {
  std::string path;
  std::size_t records;
  std::vector<ExpectedMol> mols;
};
struct ExpectedSmilesFile {
  std::string path;
  std::size_t records, readable;
  std::vector<std::pair<std::size_t, Texts>> unparsable;  // record, {name, SMILES}
};
struct Expected {
  std::vector<ExpectedSDFile> sdFiles;
  std::vector<ExpectedSmilesFile> smilesFiles;
};

std::string Unescape(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      out += text[++i] == 'n' ? '\n' : text[i];
    } else {
      out += text[i];
    }
  }
  return out;
}

// molkit_refs.tsv: tab-separated lines, empty fields kept.
Expected ReadExpected() {
  std::ifstream in(VarimoTest::DataPath("mol/molkit_refs.tsv"));
  EXPECT_TRUE(in.is_open());
  Expected expected;
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    Texts f;
    Corvane::ZqStringTokenize(f, line, "\t", false);
    f.resize(std::max<std::size_t>(f.size(), 7));
    if (f[0] == "sdf") {
      expected.sdFiles.push_back({f[1], std::stoul(f[2]), {}});
    } else if (f[0] == "mol") {
      expected.sdFiles.back().mols.push_back(
          {std::stoul(f[1]), f[2], std::stoul(f[3]), std::stoul(f[4]), std::stod(f[5]), f[6], {}, {}});
    } else if (f[0] == "data") {
      expected.sdFiles.back().mols.back().data.emplace_back(f[2], Unescape(f[3]));
    } else if (f[0] == "pos") {
      expected.sdFiles.back().mols.back().positions.push_back({std::stod(f[3]), std::stod(f[4]), std::stod(f[5])});
    } else if (f[0] == "smiles") {
      expected.smilesFiles.push_back({f[1], std::stoul(f[3]), std::stoul(f[4]), {}});
    } else if (f[0] == "unparsable") {
      expected.smilesFiles.back().unparsable.push_back({std::stoul(f[1]), {f[2], f[3]}});
    }
  }
  return expected;
}

std::string RefPath(const std::string& path) { return path[0] == '/' ? path : VarimoTest::DataPath(path); }

// A V2000 mol block of a chain of single bonds along x, `step` apart.
std::string ChainBlock(const std::string& name, const Texts& symbols, double step) {
  char line[100];
  std::snprintf(line, sizeof line, "%3zu%3zu  0  0  0  0  0  0  0  0999 V2000\n", symbols.size(), symbols.size() - 1);
  std::string block = name + "\n  Varimo\n\n" + line;
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    std::snprintf(line, sizeof line, "%10.4f%10.4f%10.4f %-3s 0  0  0  0  0  0  0  0  0  0  0  0\n", i * step, 0.0,
                  0.0, symbols[i].c_str());
    block += line;
  }
  for (std::size_t i = 1; i < symbols.size(); ++i) {
    std::snprintf(line, sizeof line, "%3zu%3zu  1  0\n", i, i + 1);
    block += line;
  }
  return block + "M  END\n";
}

Texts Names(const Mols& mols) {
  Texts names;
  for (const auto& mol : mols) names.push_back(mol->GetName());
  return names;
}

TEST(MolkitSDFile, RecordsAgreeWithRDKitSDMolSupplier) {
  const Expected expected = ReadExpected();
  ASSERT_EQ(expected.sdFiles.size(), 2u);
  for (const ExpectedSDFile& file : expected.sdFiles) {
    SCOPED_TRACE(file.path);
    Mols mols;
    Texts errors;
    ASSERT_TRUE(ZqReadSDFile(RefPath(file.path), mols, errors)) << "rdkit-data is installed by scripts/install-deps";
    EXPECT_EQ(mols.size(), file.records);
    EXPECT_EQ(errors, Texts());
    for (const ExpectedMol& want : file.mols) {
      SCOPED_TRACE("record " + std::to_string(want.record) + " " + want.name);
      ASSERT_LT(want.record, mols.size());
      const ZqMolBase& mol = *mols[want.record];
      EXPECT_EQ(mol.GetName(), want.name);
      EXPECT_EQ(mol.GetNumAtoms(), want.atoms);
      EXPECT_EQ(mol.GetNumHeavyAtoms(), want.heavyAtoms);
      EXPECT_TRUE(VarimoTest::WithinUlps(ZqCalculateMolecularWeight(mol), want.weight, kSameRoutineUlps));
      EXPECT_EQ(mol.GetCanonicalSmiles(), want.smiles);
      EXPECT_EQ(mol.GetSDDataFields(), want.data);  // tags in file order, values as RDKit reads them
      for (const auto& [tag, value] : want.data) {
        EXPECT_TRUE(ZqHasSDData(mol, tag));
        EXPECT_EQ(ZqGetSDData(mol, tag), value);
      }
      ASSERT_TRUE(mol.HasCoordinates());
      ASSERT_EQ(want.positions.size(), want.atoms);
      for (std::size_t a = 0; a < want.atoms; ++a) {
        const std::array<double, 3> p = mol.GetAtomPosition(a);
        for (int k = 0; k < 3; ++k) EXPECT_TRUE(VarimoTest::WithinUlps(p[k], want.positions[a][k], kSameRoutineUlps));
      }
    }
  }
  EXPECT_FALSE(ZqHasSDData(ZqMolBase(), "ACTIVITY"));
}

TEST(MolkitSDFile, CompressedFilesReadAsTheirText) {
  Mols plain, compressed;
  Texts errors;
  ASSERT_TRUE(ZqReadSDFile(VarimoTest::DataPath("mol/tags.sdf"), plain, errors));
  ASSERT_TRUE(ZqReadSDFile(VarimoTest::DataPath("mol/tags.sdf.gz"), compressed, errors));
  EXPECT_EQ(errors, Texts());
  ASSERT_EQ(compressed.size(), plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    EXPECT_EQ(compressed[i]->GetName(), plain[i]->GetName());
    EXPECT_EQ(compressed[i]->GetCanonicalSmiles(), plain[i]->GetCanonicalSmiles());
    EXPECT_EQ(compressed[i]->GetSDDataFields(), plain[i]->GetSDDataFields());
  }
  // A compressed file cut short is refused as a whole, like a missing one.
  const std::string cut = ::testing::TempDir() + "varimo_molkit_cut_" + std::to_string(::getpid()) + ".sdf.gz";
  {
    std::ifstream in(VarimoTest::DataPath("mol/tags.sdf.gz"), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::ofstream(cut, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
  }
  Mols none;
  EXPECT_FALSE(ZqReadSDFile(cut, none, errors));
  std::remove(cut.c_str());
  EXPECT_FALSE(ZqReadSDFile(VarimoTest::DataPath("mol/no_such_file.sdf.gz"), none, errors));
}

TEST(MolkitSmilesFile, UnparsableRecordsAgreeWithRDKitSmilesMolSupplier) {
  const Expected expected = ReadExpected();
  ASSERT_EQ(expected.smilesFiles.size(), 2u);
  for (const ExpectedSmilesFile& file : expected.smilesFiles) {
    SCOPED_TRACE(file.path);
    Mols mols;
    Texts errors;
    ASSERT_TRUE(ZqReadSmilesFile(file.path, mols, errors));
    EXPECT_EQ(mols.size(), file.readable);
    ASSERT_EQ(errors.size(), file.records - file.readable);
    for (std::size_t i = 0; i < errors.size(); ++i) {
      const auto& [record, nameAndSmiles] = file.unparsable[i];
      // RDKit's reason for a SMILES it parses but cannot sanitise follows.
      EXPECT_THAT(errors[i], StartsWith("record " + std::to_string(record) + " (" + nameAndSmiles[0] +
                                        "): cannot parse SMILES '" + nameAndSmiles[1] + "'"));
    }
  }
  Mols mols;
  Texts errors;
  EXPECT_FALSE(ZqReadSmilesFile(VarimoTest::DataPath("mol/no such file.smi"), mols, errors));
  EXPECT_FALSE(ZqReadSDFile(VarimoTest::DataPath("mol/no such file.sdf"), mols, errors));
  EXPECT_TRUE(mols.empty() && errors.empty());
}

TEST(MolkitSmilesText, HeaderNamesColumnsCommentsSkippedBadRecordsNamed) {
  Mols mols;
  Texts errors;
  ZqReadSmilesText("Smiles\tName\tpIC50\tSeries\n"
                   "CCO\tethanol\t5.1\tA\n"
                   "# a comment\n"
                   "\n"
                   "C1CC(\tbroken\t3\n"
                   "c1ccccc1 benzene 7.25 B extra\n"
                   "C(C)(C)(C)(C)C,pentavalent,1\n"
                   "OC,methanol\n"
                   "C1CC(\n",
                   mols, errors);
  EXPECT_EQ(Names(mols), (Texts{"ethanol", "methanol"}));
  EXPECT_EQ(mols[0]->GetSDDataFields(), (Fields{{"pIC50", "5.1"}, {"Series", "A"}}));
  EXPECT_EQ(mols[1]->GetSDDataFields(), Fields());
  EXPECT_FALSE(mols[0]->HasCoordinates());
  ASSERT_EQ(errors.size(), 4u);
  EXPECT_EQ(errors[0], "record 2 (broken): cannot parse SMILES 'C1CC('");
  // A field more than the header names would shift the columns.
  EXPECT_EQ(errors[1], "record 3 (benzene): has 5 fields where the header names 4 (a blank in a name?)");
  EXPECT_THAT(errors[2], StartsWith("record 4 (pentavalent): cannot parse SMILES 'C(C)(C)(C)(C)C': "));
  EXPECT_GT(errors[2].size(), std::string("record 4 (pentavalent): cannot parse SMILES 'C(C)(C)(C)(C)C': ").size());
  EXPECT_EQ(errors[3], "record 6: cannot parse SMILES 'C1CC('");

  // Without a header the further columns are numbered from 1 for the SMILES.
  mols.clear();
  errors.clear();
  ZqReadSmilesText("CCN ethylamine 2.5 x\r\nCC ethane\n", mols, errors);
  EXPECT_EQ(Names(mols), (Texts{"ethylamine", "ethane"}));
  EXPECT_EQ(mols[0]->GetSDDataFields(), (Fields{{"column 3", "2.5"}, {"column 4", "x"}}));
  EXPECT_TRUE(errors.empty());
  for (const char* nothing : {"", "\n\n", "# only a comment\n", "SMILES Name\n"}) {
    mols.clear();
    ZqReadSmilesText(nothing, mols, errors);
    EXPECT_TRUE(mols.empty() && errors.empty()) << nothing;
  }
}

TEST(MolkitSDText, BadRecordsNamedAndLeftOutOthersRead) {
  const std::string noEnd = "no end\n  Varimo\n\n  1  0  0  0  0  0  0  0  0  0999 V2000\n$$$$\n";
  const std::string corrupt = "corrupt\n  Varimo\n\n  2  1  0  0  0  0  0  0  0  0999 V2000\n    0.0 xx C\nM  END\n"
                              "> <ID>\n3\n\n$$$$\n";
  const std::string unnamed = "\n  Varimo\n\n$$$$\n";
  Mols mols;
  Texts errors;
  ZqReadSDText(ChainBlock("ethanol", {"C", "C", "O"}, 1.5) + "> <ID>\n1\n\n$$$$\n" + noEnd + corrupt + unnamed +
                   ChainBlock("last", {"N", "N"}, 1.1) + "> <ID>\n5\n",  // no closing "$$$$"
               mols, errors);
  EXPECT_EQ(Names(mols), (Texts{"ethanol", "last"}));
  EXPECT_EQ(mols[1]->GetSDDataFields(), (Fields{{"ID", "5"}}));
  EXPECT_EQ(mols[1]->GetCanonicalSmiles(), "NN");
  ASSERT_EQ(errors.size(), 3u);
  EXPECT_EQ(errors[0], "record 2 (no end): no \"M  END\" line");
  EXPECT_THAT(errors[1], StartsWith("record 3 (corrupt): cannot read the mol block: "));
  EXPECT_EQ(errors[2], "record 4: no \"M  END\" line");

  for (const char* nothing : {"", "\n", "  \n\t\n", "$$$$\n$$$$\n"}) {
    mols.clear();
    errors.clear();
    ZqReadSDText(nothing, mols, errors);
    EXPECT_TRUE(mols.empty() && errors.empty()) << nothing;
  }
  std::string error;
  EXPECT_EQ(ZqMolFromMolBlock("", &error), nullptr);
  EXPECT_EQ(error, "empty mol block");
  EXPECT_EQ(ZqMolFromMolBlock(noEnd, &error), nullptr);
  EXPECT_EQ(error, "no \"M  END\" line");
  EXPECT_EQ(ZqMolFromSmiles("C1CC(", &error), nullptr);
  EXPECT_EQ(error, "cannot parse SMILES 'C1CC('");
}

TEST(MolkitCopies, KeepSDAndGenericDataOnMoleculeAtomsAndBonds) {
  std::string error;
  std::unique_ptr<ZqMolBase> mol =
      ZqMolFromMolBlock(ChainBlock("ethanol", {"C", "C", "O"}, 1.5) + "> <ID>\n7\n\n> <NOTE> (note >5)\nx\n\n", &error);
  ASSERT_NE(mol, nullptr) << error;
  const unsigned int logP = Corvane::ZqGetTag("logP"), contribution = Corvane::ZqGetTag("Contribution");
  mol->SetData(logP, 2.5);
  mol->GetAtom(2).SetData(contribution, -0.25);
  mol->GetBond(1).SetData(contribution, 1.0);
  std::unique_ptr<ZqMolBase> copy(mol->CreateCopy());
  ZqMolBase assigned;
  assigned = *mol;
  mol.reset();  // the copies must not lean on the original
  for (ZqMolBase* c : {copy.get(), &assigned}) {
    EXPECT_EQ(c->GetName(), "ethanol");
    EXPECT_EQ(c->GetSDDataFields(), (Fields{{"ID", "7"}, {"NOTE", "x"}}));
    ASSERT_NE(c->GetData<double>(logP), nullptr);
    EXPECT_EQ(*c->GetData<double>(logP), 2.5);
    ASSERT_NE(c->GetAtom(2).GetData<double>(contribution), nullptr);
    EXPECT_EQ(*c->GetAtom(2).GetData<double>(contribution), -0.25);
    EXPECT_FALSE(c->GetAtom(1).HasData(contribution));
    EXPECT_EQ(*c->GetBond(1).GetData<double>(contribution), 1.0);
    for (const ZqAtomBase& atom : c->GetAtomIter()) EXPECT_EQ(&atom.GetParent(), c);
    for (std::size_t b = 0; b < c->GetNumBonds(); ++b) EXPECT_EQ(&c->GetBond(b).GetParent(), c);
    EXPECT_EQ(c->GetAtom(2).GetSymbol(), "O");
    EXPECT_EQ(c->GetCanonicalSmiles(), "CCO");
    EXPECT_EQ(c->GetAtomPosition(2), (std::array<double, 3>{3.0, 0.0, 0.0}));
  }
  copy->SetSDData("ID", "8");
  copy->GetAtom(2).SetData(contribution, 0.5);
  EXPECT_EQ(assigned.GetSDData("ID"), "7");
  EXPECT_EQ(*assigned.GetAtom(2).GetData<double>(contribution), -0.25);
  EXPECT_EQ(copy->GetSDDataFields().front(), (std::pair<std::string, std::string>{"ID", "8"}));  // in place
}

TEST(MolkitConformers, OneGraphActiveConformerAndCopies) {
  std::string error;
  auto first = ZqMolFromMolBlock(ChainBlock("conf 1", {"C", "C", "O"}, 1.5) + "> <E>\n-1.5\n\n", &error);
  auto second = ZqMolFromMolBlock(ChainBlock("conf 2", {"C", "C", "O"}, 1.4) + "> <E>\n-1.2\n\n", &error);
  ASSERT_TRUE(first && second) << error;
  ZqMCMolBase mc(*first);
  EXPECT_EQ(mc.GetName(), "conf 1");
  ASSERT_EQ(mc.GetNumConfs(), 1u);
  EXPECT_EQ(&mc.GetActiveConf(), &mc.GetConf(0));
  EXPECT_TRUE(mc.AddConf(*second));
  EXPECT_TRUE(mc.AddConf(*ZqMolFromSmiles("OCC")));  // the same graph, atoms in another order
  EXPECT_FALSE(mc.AddConf(*ZqMolFromSmiles("CCN")));
  EXPECT_FALSE(mc.AddConf(*ZqMolFromSmiles("CC")));
  ASSERT_EQ(mc.GetNumConfs(), 3u);

  EXPECT_FALSE(mc.SetActiveConf(3));
  EXPECT_EQ(mc.GetActiveConfIndex(), 0u);
  EXPECT_TRUE(mc.SetActiveConf(1));
  EXPECT_EQ(mc.GetActiveConfIndex(), 1u);
  EXPECT_EQ(mc.GetActiveConf().GetName(), "conf 2");
  EXPECT_EQ(mc.GetActiveConf().GetSDData("E"), "-1.2");
  EXPECT_EQ(mc.GetActiveConf().GetAtomPosition(2)[0], 2.8);
  EXPECT_EQ(mc.GetSDData("E"), "-1.5");  // the molecule keeps its own

  std::unique_ptr<ZqMolBase> created(mc.CreateCopy());
  auto* createdMC = dynamic_cast<ZqMCMolBase*>(created.get());
  ASSERT_NE(createdMC, nullptr);
  ZqMCMolBase assigned;
  assigned = mc;
  for (const ZqMCMolBase* c : {createdMC, &assigned}) {
    EXPECT_EQ(c->GetNumConfs(), 3u);
    EXPECT_EQ(c->GetActiveConfIndex(), 1u);
    EXPECT_NE(&c->GetActiveConf(), &mc.GetActiveConf());
    EXPECT_EQ(c->GetActiveConf().GetSDData("E"), "-1.2");
    EXPECT_EQ(c->GetConf(2).GetCanonicalSmiles(), "CCO");
    EXPECT_EQ(c->GetSDData("E"), "-1.5");
  }

  const ZqMCMolBase none;
  EXPECT_EQ(&none.GetActiveConf(), &none);
  EXPECT_FALSE(ZqMCMolBase().SetActiveConf(0));
  // An empty molecule becomes its first conformer's graph.
  ZqMCMolBase built;
  ASSERT_TRUE(built.AddConf(*second));
  EXPECT_EQ(built.GetNumAtoms(), 3u);
  EXPECT_EQ(built.GetCanonicalSmiles(), "CCO");
  EXPECT_FALSE(built.AddConf(*ZqMolFromSmiles("CC")));
  // Positions past the atoms are the origin, not an error of RDKit's.
  EXPECT_EQ(first->GetAtomPosition(99), (std::array<double, 3>{0.0, 0.0, 0.0}));
}

TEST(MolkitHydrogens, OnlyAtomsOfAtomicNumberOne) {
  // RDKit's SMILES parser drops plain explicit hydrogens on heavy atoms but
  // keeps isotopic ones and those of H2.
  auto Flags = [](const std::string& smiles) {
    const std::unique_ptr<ZqMolBase> mol = ZqMolFromSmiles(smiles);
    std::vector<bool> flags;
    for (const ZqAtomBase& atom : mol->GetAtomIter()) flags.push_back(ZqIsHydrogen(atom));
    return flags;
  };
  EXPECT_EQ(Flags("[H]C([H])([H])[H]"), (std::vector<bool>{false}));
  EXPECT_EQ(Flags("[H][H]"), (std::vector<bool>{true, true}));
  EXPECT_EQ(Flags("[2H]OC"), (std::vector<bool>{true, false, false}));
  EXPECT_EQ(ZqMolFromSmiles("[H][H]")->GetNumHeavyAtoms(), 0u);

  // The deuterated ammonium of tags.sdf: the plain hydrogens go, the
  // deuterium stays (as RDKit's SDMolSupplier reads it).
  Mols mols;
  Texts errors;
  ASSERT_TRUE(ZqReadSDFile(VarimoTest::DataPath("mol/tags.sdf"), mols, errors));
  ASSERT_EQ(mols.size(), 3u);
  const ZqMolBase& ammonium = *mols[1];
  ASSERT_EQ(ammonium.GetNumAtoms(), 2u);
  EXPECT_FALSE(ZqIsHydrogen(ammonium.GetAtom(0)));
  EXPECT_EQ(ammonium.GetAtom(0).GetFormalCharge(), 1);
  EXPECT_TRUE(ZqIsHydrogen(ammonium.GetAtom(1)));
  EXPECT_EQ(ammonium.GetAtom(1).GetSymbol(), "H");
  // The nitrogen carries three implicit hydrogens and the bonded deuterium.
  EXPECT_EQ(ammonium.GetAtom(0).GetTotalNumHs(), 4u);
}

// Readers on four threads at once, each also writing the canonical SMILES of
// one shared molecule; then a host that has RDKit's logs on, as RDKit's
// Python module has, still sees its own RDKit failures after ours.
TEST(MolkitThreads, ConcurrentReadersLeaveTheHostsRDKitLogsAlone) {
  RDLog::InitLogs();
  std::ostringstream hostLog;
  rdErrorLog->SetTee(hostLog);
  const std::unique_ptr<ZqMolBase> shared = ZqMolFromSmiles("Nc1ccccc1C(=O)O");
  ASSERT_TRUE(shared);
  const std::string canonical = shared->GetCanonicalSmiles();
  const std::string text = "CCO ethanol\nc1ccccc1O phenol\nC1CCNCC1 piperidine\n";
  constexpr int kRounds = 50;
  std::vector<std::size_t> read(4, 0), sameSmiles(4, 0);
  std::vector<std::thread> readers;
  for (std::size_t t = 0; t < read.size(); ++t) {
    readers.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        Mols mols;
        Texts errors;
        ZqReadSmilesText(text, mols, errors);
        read[t] += mols.size();
        sameSmiles[t] += shared->GetCanonicalSmiles() == canonical ? 1 : 0;
      }
    });
  }
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(read, std::vector<std::size_t>(4, 3 * kRounds));
  EXPECT_EQ(sameSmiles, std::vector<std::size_t>(4, kRounds));
  EXPECT_EQ(canonical, "Nc1ccccc1C(=O)O");

  Mols mols;
  Texts errors;
  ZqReadSmilesText("C1CC( broken\n", mols, errors);
  EXPECT_EQ(errors.size(), 1u);
  hostLog.str("");
  const std::unique_ptr<RDKit::RWMol> hostMol(RDKit::SmilesToMol("c1cc("));
  EXPECT_EQ(hostMol, nullptr);
  EXPECT_NE(hostLog.str().find("SMILES Parse Error"), std::string::npos) << hostLog.str();
  rdErrorLog->ClearTee();
}

}  // namespace
}  // namespace Molkit
