// molcryst draw: the asymmetric unit of a real structure as an SVG picture.
#include <gtest/gtest.h>

#include <string>

#include "CommandRun.h"

namespace molcryst {
namespace {

using testing::Outcome;
using testing::run;
using testing::slurp;

TEST(DrawCommand, DrawsTheAsymmetricUnitAndRefusesWhatItCannotRead) {
    const std::string svg = ::testing::TempDir() + "molcryst_drawn.svg";
    Outcome r = run("draw " + std::string(MOLCRYST_CIF_DIR) + "/cod-2222274-benzimidazolyl-methoxyphenol.cif " + svg);
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_EQ("data_2222274: 1 molecules, 19 atoms and 21 bonds drawn to " + svg + "\n", r.out);
    const std::string picture = slurp(svg);
    EXPECT_EQ(0u, picture.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
    EXPECT_NE(std::string::npos, picture.find("<title>2222274</title>"));
    EXPECT_NE(std::string::npos, picture.find(">N</text>"));
    EXPECT_NE(std::string::npos, picture.find(">O</text>"));
    EXPECT_EQ("</svg>\n", picture.substr(picture.size() - 7));

    // Folded: the two nitro groups of 2015798 become symbols.
    r = run("draw " + std::string(MOLCRYST_CIF_DIR) + "/cod-2015798-nitrobenzyl-thiazolidinone.cif " + svg +
            " --symbols");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_EQ("data_2015798: 1 molecules, 25 atoms and 27 bonds drawn to " + svg +
                  ", 2 symbols and 0 pi-bonded rings folded\n",
              r.out);
    const std::string folded = slurp(svg);
    EXPECT_NE(std::string::npos, folded.find("<g class=\"symbol\""));
    EXPECT_NE(std::string::npos, folded.find(">NO<tspan"));

    r = run("draw /nonexistent/file.cif " + svg);
    EXPECT_EQ(1, r.status);
    EXPECT_EQ("/nonexistent/file.cif: cannot open the file: No such file or directory\n", r.err);
    r = run("draw " + std::string(MOLCRYST_CIF_DIR) + "/cod-2222274-benzimidazolyl-methoxyphenol.cif");
    EXPECT_EQ(2, r.status);  // no output file: bad usage
}

}  // namespace
}  // namespace molcryst
