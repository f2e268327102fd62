// Columns of an application's own class, whose Query() counts wherever a column can stand.

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

class Wrapped : public ASAttribute {
 public:
  using ASAttribute::ASAttribute;
  Str Query() const override { return "f(" + ASAttribute::Query() + ")"; }
};

class Refusing : public ASAttribute {
 public:
  using ASAttribute::ASAttribute;
  Str Query() const override { throw AException("No such column. "); }
};

class Doubled : public ASGroupAttribute {
 public:
  using ASGroupAttribute::ASGroupAttribute;
  Str Query() const override { return "2*" + ASGroupAttribute::Query(); }
};

class RefusingAggregate : public ASGroupAttribute {
 public:
  RefusingAggregate() : ASGroupAttribute("", nullptr, nullptr) {}
  Str Query() const override { throw AException("No such aggregate. "); }
};

class OverriddenColumn : public testing::Test {
 protected:
  OverriddenColumn() {
    wrapped.Register(&c.id, &c);
    refusing.Register(&photo, &c);
  }

  template <class Query>
  std::string Text(Query const& query) const {
    return Sql(query, {{&o, "o"}, {&c, "c"}});
  }

  Orders o;
  Customers c;
  ASRealBlob photo{0};
  Wrapped wrapped{"id"};
  Refusing refusing{"photo"};
  Doubled const doubled{"SUM(x)", nullptr, nullptr};
  RefusingAggregate const refusingAggregate;
  ASProject p;
};

// ---- Projections ----

TEST_F(OverriddenColumn, IsListedAsItRendersItself) {
  p << o.idColumn << wrapped << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, f(c.id), o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, f(c.id), o.note");
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), "o.id AS Q1, f(c.id) AS Q2, o.note AS Q3");
  EXPECT_EQ(p.Items(), (std::list<ASSimpleAttribute*>{&o.idColumn, &wrapped, &o.noteColumn}));
}

TEST_F(OverriddenColumn, OpensAListBehindDistinct) {
  p.Distinct();
  p << wrapped << wrapped;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT f(c.id), f(c.id)");
  EXPECT_EQ(Text(p.GroupQuery()), "f(c.id), f(c.id)");
}

TEST_F(OverriddenColumn, IsListedAsItRendersItselfWhenItIsATemporary) {
  p << o.idColumn << Wrapped("x");
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, f(x)");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, f(x)");
  EXPECT_EQ(p.Items().size(), 2U);
}

TEST_F(OverriddenColumn, AggregatesAreListedAsTheyRenderThemselves) {
  p << o.idColumn << doubled << Doubled("MAX(y)", nullptr, nullptr) << &doubled;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, 2*SUM(x), 2*MAX(y), 2*SUM(x)");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id");
}

TEST_F(OverriddenColumn, LeavesAnEmptyProjectionEmptyWhenItThrows) {
  EXPECT_THROW(p << refusing, AException);
  EXPECT_THROW(p << Refusing("x"), AException);
  EXPECT_THROW(p << refusingAggregate, AException);
  EXPECT_THROW(p << RefusingAggregate(), AException);
  EXPECT_EQ(p.ProjectQuery(), "");
  EXPECT_EQ(p.GroupQuery(), "");
  EXPECT_TRUE(p.Items().empty());
  EXPECT_TRUE(p.Domains().empty());
  EXPECT_TRUE(p.BinaryPositions().empty());
}

TEST_F(OverriddenColumn, LeavesAProjectionAsItWasWhenItThrows) {
  p << o.idColumn << doubled;
  EXPECT_THROW(p << refusing, AException);
  EXPECT_THROW(p << Refusing("x"), AException);
  EXPECT_THROW(p << refusingAggregate, AException);
  EXPECT_THROW(p << RefusingAggregate(), AException);
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, 2*SUM(x)");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id");
  EXPECT_EQ(p.Items(), (std::list<ASSimpleAttribute*>{&o.idColumn, const_cast<Doubled*>(&doubled)}));
  EXPECT_EQ(p.Domains(), (std::list<ASDomain*>{&o, nullptr}));
  EXPECT_TRUE(p.BinaryPositions().empty());
}

TEST_F(OverriddenColumn, LeavesDistinctAsItWasWhenItThrows) {
  p.Distinct();
  EXPECT_THROW(p << refusing, AException);
  EXPECT_EQ(p.ProjectQuery(), "DISTINCT ");
  p << o.idColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT o.id");
}

TEST_F(OverriddenColumn, AColumnIsListedAfterOneThatThrew) {
  p << o.idColumn;
  EXPECT_THROW(p << refusing, AException);
  p << wrapped;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, f(c.id)");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, f(c.id)");
}

TEST_F(OverriddenColumn, LongListsHoldEveryColumn) {
  std::string expected = "f(a)";
  p << Wrapped("a");
  for (int i = 0; i < 300; ++i) {
    p << Wrapped("a");
    expected += ", f(a)";
  }
  EXPECT_EQ(p.ProjectQuery().ToString(), expected);
  EXPECT_EQ(p.GroupQuery().ToString(), expected);
}

// ---- Conditions ----

TEST_F(OverriddenColumn, IsComparedAsItRendersItself) {
  EXPECT_EQ(Text(o.idColumn == wrapped), "o.id=(f(c.id))");
  EXPECT_EQ(Text(o.idColumn != wrapped), "o.id!=f(c.id)");
  EXPECT_EQ(Text(o.idColumn > wrapped), "o.id>f(c.id)");
  EXPECT_EQ(Text(o.idColumn < wrapped), "o.id<f(c.id)");
  EXPECT_EQ(Text(o.idColumn >= wrapped), "o.id>=f(c.id)");
  EXPECT_EQ(Text(o.idColumn <= wrapped), "o.id<=f(c.id)");
}

TEST_F(OverriddenColumn, OnTheLeftIsComparedAsItRendersItself) {
  EXPECT_EQ(Text(wrapped == o.idColumn), "f(c.id)=(o.id)");
  EXPECT_EQ(Text(wrapped > o.idColumn), "f(c.id)>o.id");
  EXPECT_EQ(Text(wrapped == wrapped), "f(c.id)=(f(c.id))");
  EXPECT_EQ(Text(wrapped == 5), "f(c.id)=5");
}

TEST_F(OverriddenColumn, IsAnOperandOfEveryOtherConditionAsItRendersItself) {
  EXPECT_EQ(Text(o.idColumn.In(wrapped)), "o.id IN (f(c.id))");
  EXPECT_EQ(Text(o.idColumn.NotIn(wrapped)), "o.id NOT IN (f(c.id))");
  EXPECT_EQ(Text(o.noteColumn.Like(wrapped)), "o.note LIKE CONCAT(f(c.id), '%') ");
  EXPECT_EQ(Text(o.idColumn.Between(wrapped, o.totalColumn)), "o.id BETWEEN f(c.id) AND o.total");
  EXPECT_EQ(Text(o.noteColumn.InStr(wrapped)), " INSTR(o.note, RTRIM(f(c.id)))");
}

TEST_F(OverriddenColumn, IsComparedWithAggregatesAsItRendersItself) {
  EXPECT_EQ(Text(doubled > wrapped), "2*SUM(x)>f(c.id)");
  EXPECT_EQ(Text(doubled == doubled), "2*SUM(x)=2*SUM(x)");
}

TEST_F(OverriddenColumn, MakesNoConditionWhenItThrows) {
  EXPECT_THROW(static_cast<void>(o.idColumn == refusing), AException);
  EXPECT_THROW(static_cast<void>(o.idColumn < refusing), AException);
  EXPECT_THROW(static_cast<void>(o.idColumn.In(refusing)), AException);
  EXPECT_THROW(static_cast<void>(doubled > refusing), AException);
}

// ---- Orders ----

TEST_F(OverriddenColumn, IsOrderedAsItRendersItself) {
  EXPECT_EQ(Text(-wrapped), "f(c.id) DESC");
  EXPECT_EQ(Text(-o.idColumn - wrapped), "o.id DESC, f(c.id) DESC");
  EXPECT_EQ(Text(-o.idColumn + wrapped), "o.id DESC, f(c.id) ASC");
  EXPECT_EQ(Text(-doubled), "2*SUM(x) DESC");
}

TEST_F(OverriddenColumn, AggregatesContinueAnOrderAsTheyRenderThemselves) {
  ASOrder order("a");
  order - doubled;
  order + doubled;
  EXPECT_EQ(order.Query(), "a, 2*SUM(x) DESC, 2*SUM(x) ASC");
}

TEST_F(OverriddenColumn, LeavesAnOrderAsItWasWhenItThrows) {
  ASOrder order("a");
  EXPECT_THROW(static_cast<void>(order - refusing), AException);
  EXPECT_THROW(order - refusingAggregate, AException);
  EXPECT_THROW(order + refusingAggregate, AException);
  EXPECT_EQ(order.Query(), "a");
}

}  // namespace
