#include "language/KdoLaufzeit.h"

#include "language/KdoObjekt.h"

KdoLaufzeit::KdoLaufzeit() : vorige_(aktuelle_) { aktuelle_ = this; }

KdoLaufzeit::KdoLaufzeit(Neutral) : vorige_(nullptr) {}

KdoLaufzeit::~KdoLaufzeit() {
    // The tree goes while this is still in force: objects that leave it as
    // it is taken apart must find it.
    baum_.reset();
    // Runtimes are made and destroyed in nested order, as locals and members.
    if (aktuelle_ == this) aktuelle_ = vorige_;
}

KdoLaufzeit& KdoLaufzeit::aktuelle() {
    if (aktuelle_) return *aktuelle_;
    static KdoLaufzeit neutral{Neutral{}};
    return neutral;
}

void KdoLaufzeit::setzeBaum(std::unique_ptr<KdoBaum> baum) { baum_ = std::move(baum); }
