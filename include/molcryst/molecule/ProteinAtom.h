// ProteinAtom: an atom that knows the amino-acid residue it belongs to.
#ifndef MOLCRYST_MOLECULE_PROTEINATOM_H
#define MOLCRYST_MOLECULE_PROTEINATOM_H

#include <string>

#include "molcryst/molecule/Atom3d.h"

namespace molcryst {

/// An Atom3d with a residue name and the residue's code (1 to 20 in the
/// alphabetical order of the three-letter names, 0 unknown). The residue is
/// not archived.
class ProteinAtom : public Atom3d {
public:
    ProteinAtom();
    ProteinAtom(const Element& element, std::string label, std::string residue, const HSite& site);
    /// Takes the residue only from an atom that is exactly a ProteinAtom.
    explicit ProteinAtom(const Atom& atom);
    ProteinAtom(const ProteinAtom& other);
    ProteinAtom& operator=(const ProteinAtom& other) = default;
    explicit ProteinAtom(Archive& ar);

    HAtom clone() const override;

    const std::string& residue() const { return residue_; }
    bool residue_flag() const { return residue_flag_; }
    int residue_code() const { return residue_code_; }

    /// Sets the residue code from the residue name, and clears the flag of a
    /// known residue's CA, CB and NA atoms.
    void derive();
    /// The code of the first residue name found anywhere in `text`, in a fixed order; 0 if none.
    static int residue_identity(const std::string& text);

private:
    std::string residue_;
    bool residue_flag_ = false;
    int residue_code_ = 0;
};

}  // namespace molcryst

#endif
