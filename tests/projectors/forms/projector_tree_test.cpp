#include "projectors/forms/projector_tree.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QStringList>
#include <QtTest>

#include <gtest/gtest.h>

namespace qdm {
namespace {

ProjectorDefinition Named(std::string_view manufacturer, std::string_view model) {
  ProjectorDefinition projector;
  projector.Manufacturer.AssignUtf8(manufacturer);
  projector.Model.AssignUtf8(model);
  return projector;
}

ProjectorLibrary LibraryOf(std::initializer_list<std::pair<const char*, const char*>> names) {
  ProjectorLibrary library;
  for (const auto& [manufacturer, model] : names) library.Append(Named(manufacturer, model));
  return library;
}

// "MANUFACTURER: model, model" for each manufacturer that is shown.
QStringList Shown(const ProjectorTreeModel& model) {
  QStringList lines;
  for (int row = 0; row < model.rowCount(); ++row) {
    const QModelIndex top = model.index(row, 0);
    QStringList models;
    for (int child = 0; child < model.rowCount(top); ++child) {
      models.append(model.index(child, 0, top).data().toString());
    }
    lines.append(top.data().toString() + QStringLiteral(": ") + models.join(QStringLiteral(", ")));
  }
  return lines;
}

QStringList Lines(std::initializer_list<const char*> texts) {
  QStringList lines;
  for (const char* text : texts) lines.append(QString::fromUtf8(text));
  return lines;
}

TEST(ProjectorTreeModel, GroupsByManufacturerAndSortsModels) {
  const ProjectorLibrary library = LibraryOf(
      {{"Zeta", "z 2"}, {"ACME", "b"}, {"acme", "A"}, {"  Acme ", " B "}, {"ZETA", "Z 1"}, {"é", "x"}});
  ProjectorTreeModel model(library);
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(Shown(model), Lines({"ZETA: Z 1, z 2", "ACME: A, b", "É: x"}));

  const QModelIndex acme = model.index(1, 0);
  EXPECT_EQ(acme.data(ProjectorTreeModel::KeyRole), QStringLiteral("MACME"));
  EXPECT_EQ(model.index(1, 0, acme).data(ProjectorTreeModel::KeyRole), QStringLiteral("SACME#B"));
  EXPECT_EQ(model.ElementOf(acme), std::nullopt);
  EXPECT_EQ(model.ElementOf(model.index(1, 0, acme)), 1U) << "the first element of a name counts";
  EXPECT_EQ(model.ElementsOf(acme), (std::vector<std::size_t>{2, 1}));
  EXPECT_EQ(model.IndexOf(Named("aCmE", "a")), model.index(0, 0, acme));
  EXPECT_FALSE(model.IndexOf(Named("ACME", "c")).isValid());
}

TEST(ProjectorTreeModel, FiltersOnBothLevels) {
  const ProjectorLibrary library =
      LibraryOf({{"ACME", "X 100"}, {"ACME", "Y 200"}, {"XENON", "One"}, {"ZETA", "Two"}});
  ProjectorTreeModel model(library);
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  const struct {
    const char* Filter;
    QStringList Shown;
  } cases[] = {
      {"x", Lines({"ACME: X 100", "XENON: One"})},
      {" acm ", Lines({"ACME: X 100, Y 200"})},
      {"two", Lines({"ZETA: Two"})},
      {"nothing", {}},
      {"", Lines({"ACME: X 100, Y 200", "XENON: One", "ZETA: Two"})},
  };
  for (const auto& c : cases) {
    model.SetFilter(QString::fromUtf8(c.Filter));
    EXPECT_EQ(Shown(model), c.Shown) << c.Filter;
  }
  model.SetFilter(QStringLiteral("100"));
  EXPECT_EQ(model.ElementsOf(model.index(0, 0)).size(), 2U) << "hidden models belong to the manufacturer";
  EXPECT_FALSE(model.IndexOf(Named("ZETA", "Two")).isValid());
}

TEST(ProjectorTree, KeepsTheCurrentNodeAndWhatIsOpen) {
  ProjectorLibrary library = LibraryOf({{"ACME", "X 100"}, {"ACME", "Y 200"}, {"ZETA", "Two"}});
  ProjectorTree tree;
  tree.SetLibrary(library);
  tree.SelectProjector(library[1]);
  ASSERT_EQ(tree.SelectedElement(), 1U);

  tree.SetFilter(QStringLiteral("y"));
  EXPECT_EQ(tree.SelectedElement(), 1U);
  tree.SetFilter(QStringLiteral("two"));
  EXPECT_EQ(tree.SelectedElement(), std::nullopt);
  EXPECT_TRUE(tree.isExpanded(tree.Model().index(0, 0)));
  tree.SetFilter({});
  EXPECT_TRUE(tree.isExpanded(tree.Model().index(0, 0)));
  EXPECT_FALSE(tree.isExpanded(tree.Model().index(1, 0))) << "a filter opens for its own time only";

  tree.SelectProjector(library[2]);
  library.Remove(0);
  tree.Rebuild();
  EXPECT_EQ(tree.SelectedElement(), 1U);
}

TEST(ProjectorTree, ChoosesByClickAndByEnterAndNotByMoving) {
  const ProjectorLibrary library = LibraryOf({{"ACME", "X 100"}, {"ACME", "Y 200"}});
  ProjectorTree tree;
  tree.SetLibrary(library);
  tree.expandAll();
  tree.resize(300, 200);
  tree.show();
  std::vector<std::size_t> chosen;
  QObject::connect(&tree, &ProjectorTree::ElementChosen,
                   [&](std::size_t element) { chosen.push_back(element); });

  const QModelIndex top = tree.Model().index(0, 0);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(top).center());
  EXPECT_TRUE(chosen.empty()) << "a manufacturer is no choice";
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                    tree.visualRect(tree.Model().index(0, 0, top)).center());
  QTest::keyClick(&tree, Qt::Key_Down);
  EXPECT_EQ(chosen, std::vector<std::size_t>{0});
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(chosen, (std::vector<std::size_t>{0, 1}));
}

// Generous against slow machines: the figure to build for is 100 ms.
TEST(ProjectorTree, ShowsAndFiltersTenThousandModelsAtOnce) {
  ProjectorLibrary library;
  for (int i = 0; i < 10000; ++i) {
    library.Append(Named("MAKER " + std::to_string(i % 250), "Model " + std::to_string(i * 7919 % 10007)));
  }
  ProjectorTree tree;
  tree.resize(300, 600);
  tree.show();
  QElapsedTimer clock;
  clock.start();
  tree.SetLibrary(library);
  tree.repaint();
  const qint64 shown = clock.restart();
  tree.SetFilter(QStringLiteral("99"));
  tree.repaint();
  const qint64 filtered = clock.elapsed();
  RecordProperty("shown_ms", static_cast<int>(shown));
  RecordProperty("filtered_ms", static_cast<int>(filtered));
  EXPECT_LT(shown, 1000);
  EXPECT_LT(filtered, 1000);
}

}  // namespace
}  // namespace qdm
