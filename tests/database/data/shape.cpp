namespace Geometry {
namespace Flat {

class Square {
 public:
  explicit Square(int Side) : m_Side(Side) {}
  int Area() const;
  int Side() const;

 private:
  int m_Side;
};

int Square::Area() const { return m_Side * m_Side; }

int Square::Side() const { return m_Side; }

int NumSquares = 3;

}  // namespace Flat

int Area(int Side) { return Side * 4; }

}  // namespace Geometry

extern "C" int UseShapes(int Side) {
  Geometry::Flat::Square Square(Side);
  Geometry::Flat::NumSquares = Square.Side();
  return Square.Area() + Geometry::Area(Side);
}
