// A crystal view restored from its memento: the saved picture and contacts
// stand as shown, valid, with every saved criterion active and its base
// contacts still to calculate; the generated pictures wait for a rebuild.
#include "NewCrystalPrivate.h"
#include "molcryst/crystal/NewCrystalMemento.h"

namespace molcryst {

NewCrystalPrivate::NewCrystalPrivate(const NewCrystalMemento& memento)
    : crystal_maker_(memento.crystal_maker().unhand() != nullptr ? memento.crystal_maker()
                                                                 : HCrystalMaker(new CrystalMaker())),
      packing_(memento.packing()),
      packing_box_(memento.packing_box()),
      slicing_(memento.slicing()),
      slicing_plane_(memento.slicing_plane()),
      slicing_thickness_(memento.slicing_thickness()),
      slicing_displacement_(memento.slicing_displacement()),
      contact_filter_(memento.contact_filter()) {
    for (const HContactCriterion& c : memento.criteria())
        criteria_.insert(std::make_pair(c, HCriterionSpecifics(new CriterionSpecifics())));
    crystal_snapshot_ = memento.crystal_snapshot();
    crystal_snapshot_valid_ = true;
    contacts_ = memento.contacts();
}

}  // namespace molcryst
