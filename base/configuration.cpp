#include "base/configuration.h"

#include "base/base.h"

void topomine::oublier_configuration() {
  Base::init_cl_cfg = false;
  Base::list_attr.clear();
  Base::list_CLim.clear();
}
