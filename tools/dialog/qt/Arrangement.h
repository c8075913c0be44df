// Arrangement.h - where the controls of the templates stand in a window of any size.
#pragma once

#include <vector>

class QDialog;
class QWidget;

// `controls` are those of the template `templateId`, in its order, and children of `dialog`. The
// templates' own places are for one screen and one face; here stands what they have in common with
// a layout: what is beside, above and in what.
void Arrange(QDialog& dialog, int templateId, const std::vector<QWidget*>& controls);
