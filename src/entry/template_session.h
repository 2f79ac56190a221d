#pragma once

#include "entry/session.h"
#include "foundation/folders.h"
#include "mail/template_store.h"

namespace kova::entry {

/// A session that works with the practice's mail templates.
struct TemplateSession : Session {
  mail::TemplateStore templates{files, foundation::TemplatesFolder(profile)};
};

}  // namespace kova::entry
