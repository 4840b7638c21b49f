// A module as a host's plug-in would be.
#include <tov310/object.h>

namespace {

class Plain : public tov::CObject {
    TOV_DYNCREATE(Plain, CObject)
};

struct Outer {
    class Inner : public Plain {
        TOV_DYNAMIC(Inner, Plain)
    };
};

}  // namespace

TOV_EXPORT_CLASS(Plain, Plain::classPlain);
TOV_EXPORT_CLASS(Inner_Outer, Outer::Inner::classInner);
