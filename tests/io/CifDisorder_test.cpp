#include <gtest/gtest.h>

#include <iostream>

#include "molcryst/io/CifDisorder.h"
#include "molcryst/io/CifImport.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"

using namespace molcryst;

TEST(Explore, Print) {
    for (const char* f : {"cod-2224635-melaminium-phosphate-hydrate.cif", "cod-2222274-benzimidazolyl-methoxyphenol.cif",
                          "cod-4343118-ba-dhtp-mof.cif", "cod-7106028-ir-nhc-barf-zprime2.cif",
                          "cod-2238212-zn-dmit-hydroxyethylammonium.cif"}) {
        const std::string path = std::string(MOLCRYST_CIF_DIR) + "/" + f;
        CifDocument doc = CifReader::read_file(path);
        const CifBlock& b = doc.blocks.at(0);
        CifDisorder d(b);
        std::cout << f << " states " << d.nstates() << "\n";
        for (auto& w : b.warnings) std::cout << "  W " << w << "\n";
        for (auto& a : d.assemblies()) {
            std::cout << "  assembly '" << a.code << "':";
            for (auto& g : a.groups) {
                std::cout << " [" << g.group << " occ " << g.occupancy << ":";
                for (int s : g.sites) std::cout << " " << b.atoms[s].label;
                std::cout << "]";
            }
            std::cout << "\n";
        }
        std::vector<std::string> skipped;
        auto imported = CifImport::read_file(path, &skipped);
        for (auto& w : imported[0].warnings) std::cout << "  IW " << w << "\n";
        for (std::size_t m = 0; m < imported[0].disorder.size(); ++m) {
            auto& sel = imported[0].disorder[m];
            std::cout << "  molecule " << m + 1 << " atoms " << (*imported[0].crystal_maker->molecules3d())[m]->natoms();
            if (sel.unhand()) std::cout << " selector assemblies " << sel->nassemblies() << " steps " << sel->nsteps();
            std::cout << "\n";
        }
    }
}
