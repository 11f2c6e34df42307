#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>

namespace zym {

/// Gives an object of GLib back. It may be null.
struct Release {
  void operator()(gpointer object) const noexcept {
    if (object) g_object_unref(object);
  }
};

template <class Object>
using Owned = std::unique_ptr<Object, Release>;

}  // namespace zym
