// SPDX-License-Identifier: Apache-2.0

// What container files are made of: packed parts, digests, XML.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "formats/allocation_peak.h"
#include "formats/base64.h"
#include "formats/inflate.h"
#include "formats/md5.h"
#include "formats/xml_reader.h"
#include "formats/zip_archive.h"

namespace texturon {
namespace {

/// The test vectors of RFC 1321; the longer ones reach over the end of a block.
TEST(Containers, Md5IsThatOfTheStandard) {
  EXPECT_EQ(Md5Of(""), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(Md5Of("message digest"), "F96B697D7CB7938D525A2F31AAF161D0");
  EXPECT_EQ(Md5Of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
            "D174AB98D277D9F5A5611C2C9F419D9F");
  EXPECT_EQ(Md5Of("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
            "57EDF4A22BE3C955AC49DA2E2107B67A");
}

TEST(Containers, Base64IsThatOfTheStandard) {
  EXPECT_EQ(BytesFromBase64("Zm9vYg=="), "foob");
  EXPECT_EQ(BytesFromBase64("Zm9v\r\n YmE="), "fooba");
  EXPECT_EQ(BytesFromBase64("Zm9vYmFy"), "foobar");
  for (const char* wrong : {"Z", "Zm9v!", "Zg==Zg", "Zg==="}) EXPECT_FALSE(BytesFromBase64(wrong)) << wrong;
}

// "abcabcabc", packed by another program.
const std::string kPacked("\x78\x9c\x4b\x4c\x4a\x4e\x04\x23\x00\x11\x3d\x03\x73", 14);

TEST(Containers, UnpackWhatIsWholeAndNoMore) {
  EXPECT_EQ(Inflate(kPacked, 9, PackedAs::kZlib), "abcabcabc");
  EXPECT_EQ(Inflate(kPacked.substr(2, 8), 9, PackedAs::kRaw), "abcabcabc");
  EXPECT_EQ(InflateBegin(kPacked, 4), "abca");
  EXPECT_EQ(InflateBegin(kPacked, 20), "abcabcabc");
  for (const std::size_t size : {8u, 10u}) EXPECT_FALSE(Inflate(kPacked, size, PackedAs::kZlib)) << size;
  EXPECT_FALSE(Inflate(kPacked.substr(0, 8), 9, PackedAs::kZlib)) << "cut";
  const AllocationPeak memory;
  EXPECT_FALSE(Inflate(kPacked, 4'000'000'000, PackedAs::kZlib));
  EXPECT_LT(memory.Bytes(), 10'000u) << "refused before anything is unpacked";
}

TEST(Containers, ZipPartsAreCheckedBeforeTheyAreUnpacked) {
  const ZipPart parts[] = {{"a/b.txt", "12345"}, {"main.xml", "<a/>"}};
  const std::string zip = ZipOf(parts);
  const std::size_t record = zip.find("PK\x01\x02");
  struct Case {
    std::size_t place;  // in the first record of the directory, or from its start behind
    char value;
    const char* reason;
  };
  const Case cases[] = {
      {8, 1, "the part \"a/b.txt\" of the container is encrypted"},
      {10, 9, "the part \"a/b.txt\" of the container is packed by a method that is not read"},
      {10, 8, "the part \"a/b.txt\" of the container is damaged"},
      {16, 0, "the part \"a/b.txt\" of the container is damaged"},
      {27, 0x7F,
       "the part \"a/b.txt\" of the container would unpack to 2130706437 bytes, more than it can rightly hold"},
      {23, 1, "the directory of the ZIP container is damaged"},
      {44, 1, "the directory of the ZIP container is damaged"},
      {28, 99, "the directory of the ZIP container is damaged"}};
  EXPECT_EQ(ZipArchive::Unpack(*ZipArchive(zip).FindInAnyFolder("B.TXT"), 5).bytes, "12345");
  for (const Case& c : cases) {
    std::string bytes = zip;
    bytes[record + c.place] = c.value;
    const ZipArchive archive(bytes);
    const std::string reason =
        archive.entries().empty() ? archive.reason() : ZipArchive::Unpack(archive.entries()[0], 5).reason;
    EXPECT_EQ(reason, c.reason) << c.place;
  }
}

std::string EventsOf(std::string_view xml) {
  std::string events;
  for (XmlReader reader(xml);;) {
    switch (reader.Next()) {
      case XmlReader::Event::kBegin:
        events += "<" + std::string(reader.name()) + reader.Attribute("k");
        break;
      case XmlReader::Event::kText:
        events += "'" + std::string(reader.piece());
        break;
      case XmlReader::Event::kEnd:
        events += ">";
        break;
      case XmlReader::Event::kDone:
        return events;
      case XmlReader::Event::kWrong:
        return reader.reason();
    }
  }
}

TEST(Containers, XmlIsReadStrictly) {
  std::string deep;
  for (int i = 0; i < 65; ++i) deep += "<a>";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<?xml?><!-- <x> --><p:a k='1&gt;2'><b/>x&#181;&#x3bc;<![CDATA[<&]]></p:a> ", "<a1>2<b>'x\xB5\xB5'<&>"},
      {"<!DOCTYPE a SYSTEM \"u>\" [<!ENTITY e \"]\">]><a x:k = \"'\" j='2'/>", "<a'>"},
      {"<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", "line 1: an entity is not known"},
      {"<a>\n<b>&#0;</b></a>", "line 2: an entity is not known"},
      {"<a></b>", "line 1: an element is closed that is not open"},
      {"<p:a></a>", "line 1: an element is closed that is not open"},
      {"<a><b></b>", "line 1: the text ends inside an element"},
      {"<a/><b/>", "line 1: there is a second root element"},
      {"<a/>x", "line 1: there is text outside the root element"},
      {"<a k=1/>", "line 1: a tag is not understood"},
      {"<a k='1'j='2'/>", "line 1: a tag is not understood"},
      {"<a k='<'/>", "line 1: a tag is not understood"},
      {"<!-- x", "line 1: a comment is not closed"},
      {"", "line 1: there is no element"},
      {deep, "line 1: the elements are nested too deeply"}};
  for (const auto& [xml, events] : cases) EXPECT_EQ(EventsOf(xml), events) << xml;
  EXPECT_EQ(XmlText("a<\xB5&\n"), "a&lt;\xC2\xB5&amp; ");
}

}  // namespace
}  // namespace texturon
