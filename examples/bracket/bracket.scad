// A steel bracket: a foot with two bolt holes and a slot, a back with a bore in a boss, two ribs.
// Millimeters. The mesh beside this file is what `openscad -o bracket.off bracket.scad` makes of it.
$fn = 48;

module foot() {
  difference() {
    translate([-50, -35, 0]) cube([100, 70, 12]);
    for (x = [-34, 34]) translate([x, -21, -1]) cylinder(d = 11, h = 14);
    hull() for (x = [-9, 9]) translate([x, -21, -1]) cylinder(d = 9, h = 14);
  }
}

module back() {
  difference() {
    union() {
      translate([-50, 23, 0]) cube([100, 12, 40]);
      translate([0, 35, 40]) rotate([90, 0, 0]) cylinder(r = 50, h = 12);
      translate([0, 24, 56]) rotate([90, 0, 0]) cylinder(d = 46, h = 10);
    }
    translate([-60, -50, -60]) cube([120, 100, 60]);
    translate([0, 36, 56]) rotate([90, 0, 0]) cylinder(d = 28, h = 30);
  }
}

module rib(x) {
  translate([x - 4, 0, 0]) rotate([90, 0, 90]) linear_extrude(8) polygon([[-8, 12], [24, 12], [24, 58]]);
}

union() {
  foot();
  back();
  rib(-42);
  rib(42);
}
