#include <gtest/gtest.h>

#include "tests/topodata/programme.h"

TEST(Sessions, SayThisToTheByte) {
  const Collection c;
  rejouer_sessions(c, TOPOMINE_CASES "../topodata/sessions.txt");
}
