// Tools > "Green-Ampt Soil from Texture...": the class chosen goes into the soil fields the way
// the user would type it.

#include "ROAnalysis.h"
#include "SoilTextureDialog.h"

#include "soil_textures.h"

#include <QAction>
#include <QLineEdit>
#include <QTabWidget>

void ROAnalysis::mnuToolsGreenAmptSoil_Click() {
    SoilTextureDialog dialog(this, mnuOptionsGreenAmpt->isChecked());
    if (dialog.exec() != QDialog::Accepted || dialog.chosen() < 0)
        return;
    const rainfold::SoilTexture& soil =
        rainfold::kSoilTextures[static_cast<size_t>(dialog.chosen())];
    // The fields are typed on the input page; turning to it leaves results of the old soil
    // behind, as the user's own turn would.
    SSTab1->setCurrentIndex(0);
    txtKS->setText(QString::fromUtf8(soil.ksMmHr));
    txtHW->setText(QString::fromUtf8(soil.hwMm));
    txtThetaS->setText(QString::fromUtf8(soil.thetaS));
    // What leaving the saturated water content does: the variation follows the new value.
    updateOmega();
    // A class more porous than the initial water content is fine; a less porous one leaves the
    // initial water content above it, and the reminder the initial water content field gives is
    // given now rather than at the next keystroke there.
    txtThetaI_Change();
}
