// Subject: the observable base class of the objects an application shows.
#ifndef MOLCRYST_SUPPORT_SUBJECT_H
#define MOLCRYST_SUPPORT_SUBJECT_H

#include <set>

#include "molcryst/support/Observer.h"

namespace molcryst {

/// An observable object. A change is marked with set_changed and announced
/// with notify, which calls every connected observer's update once and then
/// clears the mark and the flags; notify on an unchanged subject does nothing.
class Subject {
public:
    Subject() = default;
    /// The copy is connected to the same observers.
    Subject(const Subject& other);
    /// Assignment keeps this subject's own observers and state.
    Subject& operator=(const Subject&) { return *this; }

    virtual void set_changed();
    /// Marks the subject changed and sets `flag` (a bit mask) in the update flags.
    virtual void set_changed(int flag);
    virtual void clear_changed();
    virtual void clear_flag(int flag);
    virtual ~Subject();
    virtual void connect(Observer& observer);
    virtual void disconnect(Observer& observer);
    virtual bool changed() const;
    virtual void notify();

    const Observer::UpdateFlags& update_flags() const { return flags_; }
    std::size_t nobservers() const { return observers_.size(); }

private:
    std::set<Observer*> observers_;
    Observer::UpdateFlags flags_;
    bool changed_ = false;
};

}  // namespace molcryst

#endif
