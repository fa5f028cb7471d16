// The molcryst demo: builds a small example and prints what the library did
// with it. Run by the README's first command.
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

/// A labelled node for the example graph.
struct Centre {
    explicit Centre(const std::string& label) : label_(label) {}
    std::string label_;
};
typedef THandle<Centre> HCentre;

std::string labels(const std::vector<HCentre>& nodes) {
    std::string text;
    for (const HCentre& n : nodes) text += (text.empty() ? "" : " ") + n->label_;
    return text;
}

void show_handles() {
    std::cout << "Handles\n";
    HCentre a(new Centre("C1"));
    std::cout << "  one handle to C1: use count " << a.use_count() << "\n";
    {
        HCentre b = a;
        std::cout << "  a copy shares it: use count " << a.use_count() << "\n";
    }
    std::cout << "  the copy is gone: use count " << a.use_count() << "\n";
    HCentre null;
    try {
        null->label_ = "x";
    } catch (const std::logic_error& e) {
        std::cout << "  dereferencing a null handle: " << e.what() << "\n";
    }
}

void show_archive() {
    std::cout << "Archive round trip\n";
    Archive out = Archive::temporary();
    std::vector<int> ring_sizes = {6, 6, 5};
    out << std::string("benzene") << 3.5 << ring_sizes << DatabaseEntryIdentifier("ABCDEF01");
    out.rewind();
    std::string name;
    double value = 0;
    std::vector<int> sizes;
    DatabaseEntryIdentifier id;
    out >> name >> value >> sizes >> id;
    std::cout << "  read back: \"" << name << "\", " << value << ", " << sizes.size() << " ring sizes, entry "
              << id << "\n";
}

void show_graph() {
    // Two components: a six-membered ring with a two-atom side chain, and a pair.
    std::cout << "Graph\n";
    Graph<HCentre, int> graph;
    std::vector<HCentre> ring;
    for (int i = 1; i <= 6; ++i) ring.push_back(HCentre(new Centre("C" + std::to_string(i))));
    int edge = 0;
    for (int i = 0; i < 6; ++i) graph.add_edge(++edge, ring[i], ring[(i + 1) % 6]);
    HCentre c7(new Centre("C7")), o1(new Centre("O1"));
    graph.add_edge(++edge, ring[0], c7);
    graph.add_edge(++edge, c7, o1);
    HCentre na(new Centre("Na1")), cl(new Centre("Cl1"));
    graph.add_edge(++edge, na, cl);

    std::deque<std::set<HCentre> > parts;
    std::cout << "  " << graph.nnodes() << " nodes, " << graph.nedges() << " edges, " << graph.components(parts)
              << " components of sizes";
    for (const std::set<HCentre>& part : parts) std::cout << " " << part.size();
    std::cout << "\n";

    std::vector<HCentre> side;
    graph.nodes_one_side(c7, ring[0], side);
    std::cout << "  nodes on the C7 side of C1-C7: " << labels(side) << "\n";
    bool acyclic = graph.nodes_one_side(ring[0], ring[1], side);
    std::cout << "  C1-C2 is " << (acyclic ? "not " : "") << "on a ring\n";

    std::vector<HCentre> path;
    graph.shortest_path(o1, ring[3], path);
    std::cout << "  shortest path O1 to C4: " << labels(path) << "\n";
    std::cout << "  path from O1 to Na1 exists: " << (graph.shortest_path(o1, na, path) ? "yes" : "no") << "\n";
}

}  // namespace

int main() {
    show_handles();
    show_archive();
    show_graph();
    return 0;
}
