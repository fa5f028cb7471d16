#include "molcryst/support/Subject.h"

#include <vector>

namespace molcryst {

Observer::~Observer() {
    // Copy first: disconnect edits the set being walked.
    std::set<Subject*> subjects = subjects_;
    for (Subject* s : subjects) s->disconnect(*this);
}

Subject::Subject(const Subject& other) : flags_(other.flags_), changed_(other.changed_) {
    for (Observer* o : other.observers_) connect(*o);
}

Subject::~Subject() {
    for (Observer* o : observers_) o->subjects_.erase(this);
}

void Subject::set_changed() { changed_ = true; }

void Subject::set_changed(int flag) {
    changed_ = true;
    flags_.set(flag);
}

void Subject::clear_changed() {
    changed_ = false;
    flags_.clear_all();
}

void Subject::clear_flag(int flag) { flags_.clear(flag); }

void Subject::connect(Observer& observer) {
    observers_.insert(&observer);
    observer.subjects_.insert(this);
}

void Subject::disconnect(Observer& observer) {
    observers_.erase(&observer);
    observer.subjects_.erase(this);
}

bool Subject::changed() const { return changed_; }

void Subject::notify() {
    if (!changed_) return;
    Observer::UpdateFlags flags = flags_;
    clear_changed();
    // An observer may disconnect itself or others while being told.
    std::vector<Observer*> observers(observers_.begin(), observers_.end());
    for (Observer* o : observers)
        if (observers_.count(o) != 0) o->update(*this, flags);
}

}  // namespace molcryst
