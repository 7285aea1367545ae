// SPDX-License-Identifier: Apache-2.0

#include "presentation/cutoff_proposal.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace texturon {
namespace {

TEST(CutoffProposal, IsThatOfTheStandardsTables) {
  using enum CutoffBasis;
  const std::tuple<CutoffBasis, double, double> cases[] = {
      {kRa, 0.006, 0},  {kRa, 0.0061, 0.08}, {kRa, 0.02, 0.08},  {kRa, 0.021, 0.25}, {kRa, 0.1, 0.25},
      {kRa, 2.0, 0.8},  {kRa, 2.01, 2.5},    {kRa, 10.0, 2.5},   {kRa, 80.0, 8.0},   {kRa, 80.1, 0},
      {kRsm, 0.013, 0}, {kRsm, 0.04, 0.08},  {kRsm, 0.13, 0.25}, {kRsm, 0.131, 0.8}, {kRsm, 0.4, 0.8},
      {kRsm, 1.3, 2.5}, {kRsm, 4.0, 8.0},    {kRsm, 4.1, 0},     {kRa, -1.0, 0},     {kRa, std::nan(""), 0}};
  for (const auto& [basis, value, cutoffMM] : cases) EXPECT_EQ(CutoffFor(basis, value).value_or(0), cutoffMM) << value;
}

TEST(CutoffProposal, SaysWhy) {
  Document document = MakeDocument();
  const auto row = [&]() -> ParameterDef& {
    return *std::find_if(document.catalogue.rows.begin(), document.catalogue.rows.end(),
                         [](const ParameterDef& each) { return each.name == "Rsm"; });
  };
  EXPECT_EQ(ProposeCutoff(document, CutoffBasis::kRsm).reason, "No proposal by Rsm: it has no value.");
  row().valid = true;
  row().value = 0.09;
  const CutoffProposal proposal = ProposeCutoff(document, CutoffBasis::kRsm);
  EXPECT_EQ(proposal.cutoffMM, 0.25);
  EXPECT_EQ(proposal.reason, "Rsm is 0.090 mm; for above 0.040 mm to 0.130 mm ISO 4288 has the cut-off 0.25 mm.");
  row().value = 0.3;
  EXPECT_TRUE(ProposeCutoff(document, CutoffBasis::kRsm).reason.ends_with("0.80 mm, which is in force."));
  row().value = 9.0;
  EXPECT_EQ(ProposeCutoff(document, CutoffBasis::kRsm).reason, "Rsm is 9.000 mm, for which ISO 4288 has no cut-off.");
}

}  // namespace
}  // namespace texturon
