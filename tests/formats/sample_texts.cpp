#include "formats/sample_texts.h"

namespace texturon {

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
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
      {".pr",
       "PTB PR",
       "Profil Bore3/left\r\nX-Ma\xC3\x9F = 0.00 X-Aufl\xC3\xB6sung 2000.00 Punkte/Zeile : 3\r\n1.5\r\n-2\r\n0.25",
       0.5,
       {1.5, -2.0, 0.25}},
  };
  return samples;
}

}  // namespace texturon
