#include "sibling/sax/sax_persist.h"

void ISAXPersistBase::HandleEndTag(std::wstring const& /*tag*/) {}

void ISAXPersistBase::ResolveReferences(MSAXReader& /*reader*/) {}

void ISAXPersistBase::SetObjectId(unsigned int /*id*/) {}
