// The handler interface of the SAX persistence: an object that writes itself
// as a tree of elements, and that is driven tag by tag when it is read back.
#pragma once

#include <string>

#include "kelvor2d_export.h"

class MSAXReader;
class MSAXWriter;

// Something a persisted object can be referred to by; carries no data here.
class KELVOR2D_API ISAXReference {
 public:
  virtual ~ISAXReference() {}
};

// One handler of the element tree. The reader calls HandleTag for each opening
// tag once the element's leading text is known, HandleEndTag for each closing
// tag, and AbortLoading on every handler on its stack when a document fails.
class KELVOR2D_API ISAXPersistBase {
 public:
  virtual ~ISAXPersistBase() {}
  // Resets what this handler fills before its first tag; does nothing here.
  virtual void SetDefaults() {}
  // Takes an opening tag; false refuses the element, which ends the reading.
  virtual bool HandleTag(std::wstring const& tag, MSAXReader& reader) = 0;
  // Takes a closing tag; does nothing here.
  virtual void HandleEndTag(std::wstring const& tag);
  // Called on the root handler after a complete document; does nothing here.
  virtual void ResolveReferences(MSAXReader& reader);
  // Called on the root handler after ResolveReferences; does nothing here.
  virtual void InitAfterLoading() {}
  // Writes the handler's elements; false when the object cannot be written.
  virtual bool Write(MSAXWriter& writer) const = 0;
  // The reference of the persisted object; null when it has none.
  virtual ISAXReference* GetObjectReference() = 0;
  // Stores the identifier of the persisted object; ignored here.
  virtual void SetObjectId(unsigned int id);
  // The document failed: release whatever was under construction and not yet
  // handed over to its owner. Does nothing here.
  virtual void AbortLoading() {}
};

// A handler that is itself a reference.
class KELVOR2D_API ISAXPersist : public ISAXPersistBase, public virtual ISAXReference {};

// The base of concrete handlers: the handler is its own reference.
class KELVOR2D_API ISAXPersistHelper : public ISAXPersist {
 public:
  // This object as a reference; never null.
  ISAXReference* GetObjectReference() override { return this; }
};
