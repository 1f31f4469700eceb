// Reading molecule files record by record: numbering that counts every
// record, careless and hostile inputs each named rather than dropped or
// merged, molecules too large to read, compressed files and partitions.
#include "varimo/platform/molkit/molecule_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <chrono>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule_files.h"

namespace Molkit {
namespace {

using ::testing::HasSubstr;

struct Read {
  std::size_t number;
  std::string name;
  bool ok;
  std::string error;
};

std::vector<Read> ReadAll(ZqMoleculeReader& reader) {
  std::vector<Read> out;
  ZqMoleculeRecord record;
  while (reader.Next(record)) out.push_back({record.number, record.name, record.mol != nullptr, record.error});
  return out;
}

std::vector<Read> ReadText(const std::string& text, ZqMoleculeFileFormat format) {
  return ReadAll(*ZqMoleculeReader::FromText(text, format));
}

std::string Record(const std::string& smiles, const std::string& name, const std::string& field = "") {
  std::unique_ptr<ZqMolBase> mol = ZqMolFromSmiles(smiles);
  mol->SetName(name);
  if (!field.empty()) mol->SetSDData("pIC50", field);
  return ZqMolToSDRecord(*mol);
}

TEST(MoleculeReader, AnSDRecordWithoutItsEndLineIsNamedWithTheNextAndBothLeftOut) {
  std::string merged = Record("CCO", "ethanol", "5");
  merged.erase(merged.rfind("$$$$"));  // the end line of ethanol is missing
  const std::vector<Read> read = ReadText(Record("CC", "ethane") + merged + Record("CCCO", "propanol") +
                                              Record("CCCCO", "butanol"), ZqMoleculeFileFormat::SD);
  ASSERT_EQ(read.size(), 4u);
  EXPECT_TRUE(read[0].ok);
  EXPECT_EQ(read[1].number, 2u);
  EXPECT_FALSE(read[1].ok);
  EXPECT_EQ(read[1].error, "runs into the next molecule, record 3 (propanol), without a \"$$$$\" line: both left out");
  EXPECT_EQ(read[2].number, 3u);
  EXPECT_EQ(read[2].name, "propanol");
  EXPECT_FALSE(read[2].ok);
  EXPECT_EQ(read[2].error, "follows record 2 (ethanol) without a \"$$$$\" line between them: both left out");
  EXPECT_EQ(read[3].number, 4u);
  EXPECT_TRUE(read[3].ok);
}

TEST(MoleculeReader, ControlBytesExtraFieldsAndAByteOrderMarkInSmilesAndCsv) {
  std::string text = std::string("\xEF\xBB\xBF") + "smiles name act\nCC";
  text += '\0';
  text += "O nul 1\nCCO ethanol 2\nCCOc1ccccc1 vitamin 2 9.5\nC\x01O ctrl 3\n";
  const std::vector<Read> read = ReadText(text, ZqMoleculeFileFormat::Smiles);
  ASSERT_EQ(read.size(), 4u);  // the header, its mark taken off, is no record
  EXPECT_EQ(read[0].error, "a control byte (0x00) in the line");
  EXPECT_TRUE(read[1].ok);
  EXPECT_EQ(read[2].name, "vitamin");
  EXPECT_EQ(read[2].error, "has 4 fields where the header names 3 (a blank in a name?)");
  EXPECT_EQ(read[3].error, "a control byte (0x01) in the line");

  std::vector<std::unique_ptr<ZqMolBase>> mols;
  std::vector<std::string> errors;
  ZqReadSmilesCsvText("\xEF\xBB\xBFsmiles,name,act\nCCO,ethanol,1.5\n\"CC,\",comma,2\n", mols, errors);
  ASSERT_EQ(mols.size(), 1u);
  EXPECT_EQ(mols[0]->GetSDData("act"), "1.5");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_THAT(errors[0], ::testing::StartsWith("record 2 (comma): cannot parse SMILES 'CC,'"));
  // An SD file's first name keeps no mark either.
  ZqReadSDText("\xEF\xBB\xBF" + Record("CCO", "ethanol"), mols, errors);
  EXPECT_EQ(mols.back()->GetName(), "ethanol");
}

TEST(MoleculeReader, MoleculesAboveTheSizeLimitAreRefusedQuickly) {
  const auto start = std::chrono::steady_clock::now();
  std::string branches;
  for (int i = 0; i < 20000; ++i) branches += "C(";
  branches += "C" + std::string(20000, ')');
  const std::vector<Read> read =
      ReadText(std::string(200000, 'C') + " chain\n" + branches + " branches\n" + std::string(ZqMaxMoleculeAtoms, 'C') +
                   " largest\n",
               ZqMoleculeFileFormat::Smiles);
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(read[0].error, "too large: 200000 atoms, at most 1000");
  EXPECT_EQ(read[1].error, "too large: 20001 atoms, at most 1000");
  EXPECT_TRUE(read[2].ok) << read[2].error;
  // Far below what reading the large ones would take (hours).
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  // Past 999 atoms only a V3000 block can say how many: its COUNTS line is
  // read before the block.
  const std::vector<Read> block = ReadText(
      "big\n  program\n\n  0  0  0  0  0  0  0  0  0  0999 V3000\nM  V30 BEGIN CTAB\nM  V30 COUNTS 1001 0 0 0 0\n"
      "M  V30 END CTAB\nM  END\n$$$$\n",
      ZqMoleculeFileFormat::SD);
  ASSERT_EQ(block.size(), 1u);
  EXPECT_EQ(block[0].error, "too large: 1001 atoms, at most 1000");
}

TEST(MoleculeReader, PartitionsNumberOnAndKeepTheirHeader) {
  const std::vector<Read> read =
      ReadAll(*ZqMoleculeReader::FromText("CCO ethanol 1\nC1CC( broken 2\n", ZqMoleculeFileFormat::Smiles, 101,
                                          "smiles name act"));
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(read[0].number, 101u);
  EXPECT_EQ(read[1].number, 102u);
  EXPECT_EQ(read[1].name, "broken");
  std::vector<Read> csv = ReadAll(*ZqMoleculeReader::FromText("CCO,x\n", ZqMoleculeFileFormat::SmilesCsv, 7, "smiles,id"));
  ASSERT_EQ(csv.size(), 1u);
  EXPECT_EQ(csv[0].name, "x");
  EXPECT_EQ(csv[0].number, 7u);
}

TEST(MoleculeReader, ACompressedFileCutShortStopsWithAReason) {
  std::string text;
  for (int i = 0; i < 400; ++i) text += "CCO ethanol" + std::to_string(i) + "\n";
  const std::string path = ::testing::TempDir() + "reader_" + std::to_string(getpid()) + ".smi.gz";
  gzFile out = gzopen(path.c_str(), "wb");
  gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
  gzclose(out);
  std::string error;
  ASSERT_EQ(ReadAll(*ZqMoleculeReader::Open(path, error)).size(), 400u);
  ASSERT_EQ(truncate(path.c_str(), 200), 0);
  std::unique_ptr<ZqMoleculeReader> reader = ZqMoleculeReader::Open(path, error);
  ReadAll(*reader);
  EXPECT_THAT(reader->GetError(), HasSubstr("the file is damaged"));
  EXPECT_FALSE(ZqMoleculeReader::Open("/nonexistent/x.sdf", error));
  EXPECT_EQ(error, "cannot read /nonexistent/x.sdf");
  std::remove(path.c_str());
}

}  // namespace
}  // namespace Molkit
