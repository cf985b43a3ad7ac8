// A job from file to coordinates, without a map.
#include <KelvaneCore.h>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  kvn::System system;
  system.setConfigFile({});
  kvn::Job job(system.createProject());
  job.open(QString::fromUtf8(argv[1]));
  job.adjust();
  return job.planeAdjustment()->result().points.size() == 12 ? 0 : 1;
}
