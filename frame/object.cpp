#include <tov310/object.h>

namespace tov {

CRuntimeClass const CObject::classCObject{"CObject", nullptr, nullptr};

CObject::~CObject() = default;

CRuntimeClass const* CObject::GetRuntimeClass() const {
    return &classCObject;
}

}  // namespace tov
