// Simple shapes: positions and normals of their vertices, and their triangles. Metres.

// A box of a size (x, y, z) about a centre.
export function box(size, centre = [0, 0, 0]) {
  const shape = { positions: [], normals: [], indices: [] };
  for (let axis = 0; axis < 3; ++axis) {
    for (const side of [-1, 1]) {
      const first = shape.positions.length;
      const normal = [0, 0, 0];
      normal[axis] = side;
      for (const [a, b] of [[-1, -1], [1, -1], [1, 1], [-1, 1]]) {
        const corner = [0, 0, 0];
        corner[axis] = side;
        corner[(axis + 1) % 3] = a * side; // keeps the winding outward on both sides
        corner[(axis + 2) % 3] = b;
        shape.positions.push(corner.map((part, i) => part * size[i] / 2 + centre[i]));
        shape.normals.push(normal);
      }
      shape.indices.push(...[0, 1, 2, 0, 2, 3].map((i) => first + i));
    }
  }
  return shape;
}

// A disc or wheel: round about Z, `depth` thick.
export function wheel(radius, depth, sides = 24) {
  const shape = { positions: [], normals: [], indices: [] };
  const angles = [...Array(sides + 1).keys()].map((i) => 2 * Math.PI * i / sides);
  const around = angles.map((angle) => [Math.cos(angle), Math.sin(angle)]);
  for (const side of [-1, 1]) {
    const first = shape.positions.length;
    const z = side * depth / 2;
    shape.positions.push([0, 0, z], ...around.map(([x, y]) => [x * radius, y * radius, z]));
    shape.normals.push(...Array(sides + 2).fill([0, 0, side]));
    for (let i = 1; i <= sides; ++i) {
      shape.indices.push(first, first + i + (side < 0), first + i + (side > 0));
    }
  }
  const first = shape.positions.length;
  for (const [x, y] of around) {
    shape.positions.push([x * radius, y * radius, -depth / 2], [x * radius, y * radius, depth / 2]);
    shape.normals.push([x, y, 0], [x, y, 0]);
  }
  for (let i = first; i < first + 2 * sides; i += 2) {
    shape.indices.push(i, i + 2, i + 1, i + 1, i + 2, i + 3);
  }
  return shape;
}

// A ball, or an egg with three radii, about a centre.
export function ball(radii, centre = [0, 0, 0], rings = 10, sides = 16) {
  const shape = { positions: [], normals: [], indices: [] };
  for (let ring = 0; ring <= rings; ++ring) {
    for (let side = 0; side <= sides; ++side) {
      const [down, round] = [Math.PI * ring / rings, 2 * Math.PI * side / sides];
      const way = [Math.sin(down) * Math.cos(round), Math.cos(down), Math.sin(down) * Math.sin(round)];
      const normal = way.map((part, i) => part / radii[i]);
      const length = Math.hypot(...normal);
      shape.positions.push(way.map((part, i) => part * radii[i] + centre[i]));
      shape.normals.push(normal.map((part) => part / length));
      if (ring < rings && side < sides) {
        const [here, below] = [ring * (sides + 1) + side, (ring + 1) * (sides + 1) + side];
        shape.indices.push(...(ring > 0 ? [here, here + 1, below + 1] : []));
        shape.indices.push(...(ring < rings - 1 ? [here, below + 1, below] : []));
      }
    }
  }
  return shape;
}

// Several shapes as one.
export function joined(...shapes) {
  const whole = { positions: [], normals: [], indices: [] };
  for (const { positions, normals, indices } of shapes) {
    whole.indices.push(...indices.map((i) => whole.positions.length + i));
    whole.positions.push(...positions);
    whole.normals.push(...normals);
  }
  return whole;
}

export const moved = ({ positions, ...rest }, by) => ({
  ...rest,
  positions: positions.map((position) => position.map((part, i) => part + by[i])),
});
