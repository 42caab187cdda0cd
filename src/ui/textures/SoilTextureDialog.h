#pragma once
// Tools > "Green-Ampt Soil from Texture...": the eleven soil texture classes with their mean
// Green-Ampt parameters, the values each puts into the soil fields, and the source. The class
// chosen is handed back to the main window, which types it into the fields.

#include <QDialog>

class QPushButton;
class QTableWidget;

class SoilTextureDialog : public QDialog {
    Q_OBJECT

public:
    // `modelOn`: whether Options > "Green-Ampt" is ticked; when it is not, a line says that the
    // values filled in are used once it is.
    SoilTextureDialog(QWidget* parent, bool modelOn);

    // The index into rainfold::kSoilTextures of the class chosen, -1 while none is selected.
    int chosen() const;

private:
    QTableWidget* tblTextures = nullptr;
    QPushButton* cmdFill = nullptr;
};
