#include "forms/projectors/projector_tree.h"

#include "library_fixture.h"

#include <QAbstractItemModelTester>
#include <QAction>

namespace qdm {
namespace {

class ProjectorTreeTest : public LibraryFixture {
 protected:
  // "MANUFACTURER: model, model" for each manufacturer that is shown.
  Lines Shown() const {
    Lines lines;
    for (int row = 0; row < tree_.Model().rowCount(); ++row) {
      const QModelIndex top = tree_.Model().index(row, 0);
      std::string models;
      for (int child = 0; child < tree_.Model().rowCount(top); ++child) {
        models +=
            (child == 0 ? "" : ", ") + tree_.Model().index(child, 0, top).data().toString().toStdString();
      }
      lines.push_back(top.data().toString().toStdString() + ": " + models);
    }
    return lines;
  }
  ProjectorTree tree_;
};

TEST_F(ProjectorTreeTest, GroupsAndSortsModelsAndFiltersOnBothLevels) {
  Put({Named("Zeta", "z 2"), Named("ACME", "b"), Named("acme", "A"), Named("  Acme ", " B "),
       Named("ZETA", "Z 1"), Named("é", "Bax")});
  tree_.SetLibrary(globals_.ProjectorDatabase);
  auto& model = tree_.Model();
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  const struct {
    const char* Filter;
    Lines Shows;
  } cases[] = {{"b", {"ACME: b", "É: Bax"}},
               {" acm ", {"ACME: A, b"}},
               {"z zet", {"ZETA: Z 1, z 2"}},
               {"2 zet", {"ZETA: z 2"}},
               {"nothing", {}},
               {"", {"ZETA: Z 1, z 2", "ACME: A, b", "É: Bax"}}};
  for (const auto& c : cases) {
    tree_.SetFilter(QString::fromUtf8(c.Filter));
    EXPECT_EQ(Shown(), c.Shows) << c.Filter;
  }
  tree_.SetFilter(QStringLiteral("b"));
  EXPECT_EQ(model.ElementsOf(model.index(0, 0)), (std::vector<std::size_t>{2, 1})) << "also the hidden";
  Child<QAction>(tree_, "SORT").trigger();
  tree_.SetFilter({});
  EXPECT_EQ(Shown(), (Lines{"ACME: A, b", "ZETA: Z 1, z 2", "É: Bax"}));
  tree_.SetFilter(QStringLiteral("nothing"));
  EXPECT_EQ(tree_.WhyEmpty(), QStringLiteral("No projector has “nothing” in its names."));
}

TEST_F(ProjectorTreeTest, KeepsTheCurrentNodeAndWhatIsOpen) {
  Put({Named("ACME", "X 100"), Named("ACME", "Y 200"), Named("ZETA", "Two")});
  tree_.SetLibrary(globals_.ProjectorDatabase);
  tree_.SelectProjector(Named("ACME", "Y 200"));
  tree_.SetFilter(QStringLiteral("y"));
  EXPECT_EQ(tree_.SelectedElement(), 1U);
  tree_.SetFilter(QStringLiteral("two"));
  EXPECT_EQ(tree_.SelectedElement(), std::nullopt);
  tree_.SetFilter({});
  EXPECT_TRUE(tree_.isExpanded(tree_.Model().index(0, 0)));
  EXPECT_FALSE(tree_.isExpanded(tree_.Model().index(1, 0))) << "a filter opens for its own time only";
  tree_.SelectProjector(Named("ZETA", "Two"));
  globals_.ProjectorDatabase.Remove(0);
  tree_.Rebuild();
  EXPECT_EQ(tree_.SelectedElement(), 1U);
}

}  // namespace
}  // namespace qdm
