#pragma once

#include <functional>
#include <memory>

#include "platform/recordstore/db_sys.h"
#include "platform/recordstore/engine.h"

namespace kova::store::testing {

/// Puts an engine of a test's own before that of an open connection, which goes on with it.
struct EngineOf {
  static void Wrap(CKovaDBSys& db, const std::function<std::unique_ptr<Engine>(std::unique_ptr<Engine>)>& wrap) {
    ++db.generation_;
    db.kept_.clear();
    db.engine_ = wrap(std::move(db.engine_));
  }
};

}  // namespace kova::store::testing
