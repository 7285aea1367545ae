// SPDX-License-Identifier: Apache-2.0

#include "formats/sample_texts.h"

#include <bit>
#include <cstdint>
#include <utility>

namespace texturon {
namespace {

void Put(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
}

/// A binary profile of 16-bit points 100, -300, (missing), 250 at 0.5 um with 0.01 um a step.
std::string BinaryProfile() {
  std::string bytes(512 + 5, '\0');
  bytes.replace(0, 12, "DIGITAL SURF");
  bytes.replace(20, 6, "Object");
  for (const auto& [at, value] : {std::pair{18, 1}, {86, 1}, {98, 16}, {334, 3}, {336, 2}}) {
    Put(bytes, static_cast<std::size_t>(at), static_cast<std::uint64_t>(value), 2);
  }
  Put(bytes, 100, static_cast<std::uint32_t>(-300), 4);
  Put(bytes, 104, 250, 4);
  for (const std::size_t at : {108U, 116U}) Put(bytes, at, 4, 4);
  Put(bytes, 112, 1, 4);
  Put(bytes, 120, std::bit_cast<std::uint32_t>(0.5F), 4);
  Put(bytes, 128, std::bit_cast<std::uint32_t>(0.25F), 4);
  bytes.replace(180, 3, "\xB5m ");
  bytes.replace(212, 3, "um ");
  for (const int value : {100, -300, -302, 250}) {
    bytes += "  ";
    Put(bytes, bytes.size() - 2, static_cast<std::uint16_t>(value), 2);
  }
  return bytes;
}

/// A softgauge with the sum of its bytes.
std::string Softgauge() {
  const std::string records =
      "ISO 5436 - 2000 sine\r\nPRF 0 Sine-1\r\nCX I 3 mm 1.0 D 0.0005\r\nCZ A 3 um 1.0e-1 D\r\n\x03\r\n"
      "DATE 01.02.2020\r\nTIME 10:11\r\nPROBING_SYSTEM Contacting 2 um\r\n\x03\r\n15\r\n-20\r\n2.5\r\n\x03\r\n";
  unsigned sum = 0;
  for (const char c : records) sum += static_cast<unsigned char>(c);
  return records + std::to_string(sum % 65535) + "\r\n\x03\r\n\x1A";
}

}  // namespace

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

std::string SdfGridText() {
  return "aISO-1.0\nManufacID = ISO\nCreateDate = 1\nModDate = 0102\nNumPoints = 3\nNumProfiles = 2\nXscale = 1e-6\n"
         "Yscale = 5e-6\nZscale = 1e-9\nZresolution = 0\nCompression = 0\nDataType = 3\nCheckType = 0\n*\n\n"
         "1000 2000 3000\n4000 BAD 6000\n*\n<Part>\n*\n";
}

std::string SdfGridBinary() {
  std::string binary = "bISO-1.0ISO       ";
  binary += "0101202000000102202000";
  binary += std::string("00", 2) + std::string("\x03\0\x02\0", 4);
  const auto append = [&binary](double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    for (int i = 0; i < 8; ++i) binary.push_back(static_cast<char>(bits >> (8 * i)));
  };
  for (const double scale : {1e-6, 5e-6, 1e-9, 0.0}) append(scale);
  binary += std::string("\0\5\0", 3);
  for (const int value : {1000, 2000, 3000, 4000, 5000, 6000}) {
    binary.push_back(static_cast<char>(value & 0xFF));
    binary.push_back(static_cast<char>(value >> 8));
  }
  return binary;
}

const std::vector<SampleText>& SampleTexts() {
  static const std::vector<SampleText> samples = {
      {".lmt",
       "native format",
       "Lumetrace_Data 1.0\r\nIDENTIFICATION: Shaft 12\r\nDATE: 04 Mar 2015 - 09:05:07\r\nSPACING_UM: 0.500000\r\n"
       "NUMBER_OF_POINTS: 3\r\nPROFILE_UM:\r\n   -0.123456\r\n    0.500000\r\n    7.250000\r\n",
       0.5,
       {-0.123456, 0.5, 7.25}},
      {".prf",
       "Taylor Hobson PRF",
       "1 2\nSG2004 0.000000e+000 PRF\nCX M 4.000000e+000 MM 1.000000e+000 D\nCZ M 4.000000e+000 UM 1.000000e-002 L\n"
       "EOR\nSTYLUS_RADIUS 2.000000e-003 MM\nSPACING CX 2.500000e-004\nMAP 1.000000e+000 CZ CZ 1 1\n"
       "COMMENT LS 0.0025\nEOR\n100\n-250\n0\n7\n99\nEOR\nEOF",
       0.25,
       {1.0, -2.5, 0.0, 0.07}},
      {".mod",
       "Taylor Hobson MOD",
       Lines({"1 2", "TXRN_  0.000000e+000 MOD", "CX A 3.0 MM 1.0 D", "CZ A 3.0 MM 1.0 D", "EOR",
              "FILTER_MODE NO_FILTER", "FORM LS_LINE", "ASSESSMENT_LENGTH 2.0e-003 MM", "NUMBER_MOD_POINTS 3", "EOR",
              "0.0e+000", "1.0e-003", "2.0e-003", "1.5e-003", "-2.0e-003", "0", "EOR", "EOF"}),
       1.0,
       {1.5, -2.0, 0.0}},
      {".sdf",
       "Standard Data Format",
       "aBCR-1.0\nManufacID\t= ACME 3\nCreateDate\t= 010220200102\nModDate\t= 030220200102\nNumPoints\t= 3\n"
       "NumProfiles\t= 1\nXscale\t= 2.5e-7\nYscale\t= 1\nZscale\t= 1e-6\nZresolution\t= -1\nCompression\t= 0\n"
       "DataType\t= 7\nCheckType\t= 0\n*\n1.5 -2\n0.25 99\n*\nanything\n*",
       0.25,
       {1.5, -2.0, 0.25}},
      {".sdf", "Standard Data Format", SdfGridText(), 5.0, {2.0}},
      {".sdf", "Standard Data Format", SdfGridBinary(), 5.0, {2.0, 5.0}},
      {".pr",
       "PTB PR",
       "Profil Bore3/left\r\nX-Ma\xC3\x9F = 0.00 X-Aufl\xC3\xB6sung 2000.00 Punkte/Zeile : 3\r\n1.5\r\n-2\r\n0.25",
       0.5,
       {1.5, -2.0, 0.25}},
      {".tx2", "TX1/TX2 text", "0.00200\n5\n-1.6360\n1.6440\n0.5\n0\n7", 2.0, {-1.636, 1.644, 0.5, 0.0, 7.0}},
      {".hfm",
       "X;Y;valid table",
       "X;Y;valid\r\n[mm];[mm];[1/0]\r\n8.6722;0.001;1\r\n8.6727;9.9;0\r\n8.6732;0.003;1\r\n",
       0.5,
       {1.0, 2.0, 3.0}},
      {".txt",
       "step profiler text",
       "Data\tSheet 1\r\nRecipe\tR\r\nPoints\t3\r\nX-Resolution\t0.5\r\n\t Raw\t RawLevel\t Wavi\r\n"
       "1\t 9\t -13747.8\t 1\r\n2\t 9\t 1.5e+004\t 1\r\n3\t 9\t 0\t 1\r\n",
       0.5,
       {-1.37478, 1.5, 0.0}},
      {".txt",
       "surface tester text",
       "// Header\nVersion;SJ-410;5\nDate;01/02/2020;10:11:12\n// Condition-A\nProfile;P_ISO97\nPitch;0,5;um\n"
       "// CalcResult\nRa;1,2;um;;\n// CalcData\n-0,25\n1,5\n0\n",
       0.5,
       {-0.25, 1.5, 0.0}},
      {".txt",
       "MarSurf text",
       "[PROFILE_HEADER]\r\nNAME=A\r\nINTERVAL_LIN=0.0005\r\nNO_TOT_POINTS=3\r\nPB_RADIUS=0.002\r\n"
       "[PROFILE_VALUES]\r\n//index=x y z c lock\r\n1=0 0 0.001 0 0\r\n2=0.0005 0 9 0 1\r\n3=0.001 0 0.002 0 0\r\n",
       0.5,
       {1.0, 1.5, 2.0}},
      {".txt", "text with a unit pair", "mm;um\r\n0,0;1,5\r\n0,0005;-2\r\n0,001;0,25\r\n", 0.5, {1.5, -2.0, 0.25}},
      {".txt", "two-column text", "0.000\t1.5\n0.001\t-2\n0.002\t0.25", 1.0, {1.5, -2.0, 0.25}},
      {".dat", "two-column text", "X(mm)\tZ (nm)\n0.02 1500\n0.01 -2000\n0.00 250\n\n", 10.0, {0.25, -2.0, 1.5}},
      {".xy", "two-column text", "0 1\n24.892 -25400\n49.784 3\n74.676 -25400\n", 24.892, {1.0, 2.0, 3.0}},
      {".txt", "generic text", "Some title\nof three\nlines\n1.5\n-2\n0.25\n", 2.0, {1.5, -2.0, 0.25}},
      {".pro", "Digital Surf profile", BinaryProfile(), 0.5, {25.0, -75.0, -6.25, 62.5}},
      {".smd", "SMD softgauge", Softgauge(), 0.5, {1.5, -2.0, 0.25}},
      {".csv",
       "comma-separated exports",
       "Scan Parameters\r\r\nStylus radius,12.5 um\r\nLength,1.05 um\r\n\r\r\nScan Data\r\r\n"
       "Lateral um,Raw Micrometer,\r\n0.0,1.5,,\r\n0.3,-2,,\r\n0.7,0.25,,\r\n1.0,1,,\r\n",
       0.35,
       {1.5, -2.0, 0.25, 1.0}},
      {".prf",
       "keyed text of a record",
       "[PROFILE_HISTORY]\r\nDateTime=01.02.2020 "
       "10:11\r\nOBJECT=Shaft\r\nNUMBER=7\r\n[PROFILE_HEADER]\r\nNO_TOT_POINTS=3\r\n"
       "[PROFILE_VALUES]\r\n//index=x y z c lock\r\n1=0 0 0.001 0 0\r\n2=0,0005 0 -0,002 0 0\r\n3=0.001 0 0 0 0\r\n",
       0.5,
       {1.0, -2.0, 0.0}},
      {".pcd",
       "portable text",
       "Name = x\r\nRES=0.01\r\n100\r\n-250 7\r\n0\r\nEnd 3\r\n5\r\n",
       2.0,
       {1.0, -2.5, 0.07, 0.0}},
      {".mes", "comma list", "1.5,-2,\r\n0.25,", 2.0, {1.5, -2.0, 0.25}},
      {".txt", "plain softgauge text", "0.5\r\n1.500\r\n-2.000\r\n0.250\r\n", 0.5, {1.5, -2.0, 0.25}},
      {".txt",
       "distance table",
       "Distance(um)\tHeight(nm)\r\n0\t1500\r\n2.5\t-2000\r\n5\t250\r\n",
       2.5,
       {1.5, -2.0, 0.25}},
      {".pro",
       "text with four header lines",
       "a\r\n1 2\r\nc\r\nd\r\n3 0.0005\r\n1.5\r\n-2\r\n0.25",
       0.5,
       {1.5, -2.0, 0.25}},
      {".csv",
       "comma-separated exports",
       "\"Shaft 4, left\",4\r\nDATE 01/02/2020,1.5\r\nTIME 10:11,-2\r\nISO 1997,0.25\r\nR,7\r\nRa 3.01 um,\r\n",
       2.0,
       {1.5, -2.0, 0.25, 7.0}},
      {".csv",
       "comma-separated exports",
       "index,x in \xC2\xB5m,y in \xB5m\r\n0,-99.5,1.5\r\n1,-99.25,-2\r\n2,-99,0.25\r\n",
       0.25,
       {1.5, -2.0, 0.25}},
  };
  return samples;
}

}  // namespace texturon
