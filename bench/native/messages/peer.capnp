@0xb5d3a1c87e6f2941;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("peers::cap");

struct Ping { number @0 :Int64; }
struct Reply { value @0 :Int32; }
struct CreateGroup {
  name @0 :Text;
  kind @1 :Int32;
  argument @2 :Text;
}
struct DeviceOnline {
  group @0 :Text;
  device @1 :Text;
  isRemote @2 :Int32;
  data @3 :Data;
}
