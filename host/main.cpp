#include <Kelvane.h>
#include <iostream>
int main(int argc, char** argv) {
  kvn::System sys;
  sys.setConfigFile("");
  auto p = sys.createProject();
  p->read(QString::fromUtf8(argv[argc - 1]));
  kvn::AlgorithmAdjust a;
  kvn::Configure c;
  c.AngleError = 3.24f;
  c.LineFixedError = 5;
  c.LineProportionError = 0;
  a.setConfigure(c);
  a.setNetworkData(p->getNetwork());
  a.setCountControlDistances(true);
  a.calculateAdjust();
  for (auto& x : a.getPointErrorInfoList()) printf("%s %.6f %.6f %.6f %.6f\n", x.name.c_str(), x.x, x.y, x.mx, x.my);
  printf("%.7f %d %d\n", a.getSummary().unitError, a.getSummary().redundancy, a.getSummary().iterations);
}
