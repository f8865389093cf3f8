#include "files/OwnerOnlyFiles_p.h"

namespace
{
thread_local int living = 0;
} // namespace

vlm::OwnerOnlyFiles::OwnerOnlyFiles() { ++living; }

vlm::OwnerOnlyFiles::~OwnerOnlyFiles() { --living; }

bool vlm::OwnerOnlyFiles::wanted() { return living > 0; }
