#pragma once
// The form of the comparison detail dialog: title bar with close button, the
// main picture frame (captured face, library face, similarity, mask icon), and
// on the right camera, time, the scene picture and a page stack with the face
// attributes (page 0) and the matched person's data (page 1). Built once by
// CComparisonDetail, which owns every widget through Qt parenthood; this
// struct only keeps the pointers. GUI thread.
#include <array>

class QDialog;
class QFrame;
class QLabel;
class QPushButton;
class QStackedWidget;
class QWidget;

namespace BodyTemperature {

struct CComparisonDetailForm {
    static constexpr int kWidth = 1290;
    static constexpr int kHeight = 580;
    static constexpr int kPictureWidth = 412;
    static constexpr int kPictureHeight = 460;

    void setupUi(QDialog* dialog);
    void retranslateUi(QDialog* dialog);
    // Places the first picture frame (and the mask icon on it) at x in the main frame.
    void placeFirstFrame(int x);
    // The attribute/person page stack beside or below the scene picture.
    void placePages(bool belowScene);

    void setupTitleBar(QDialog* dialog);
    void setupPictures(QDialog* dialog);
    QWidget* setupAttributePage();
    QWidget* setupPersonPage();

    QFrame* m_pBorderFrame = nullptr;
    QLabel* m_pTitleLbl = nullptr;
    QPushButton* m_pCloseBtn = nullptr;
    QFrame* m_pMainFrame = nullptr;  // object name "frame"
    QFrame* m_pFirstFrame = nullptr;
    QLabel* m_pFirstPicLbl = nullptr;
    QFrame* m_pSecondFrame = nullptr;
    QLabel* m_pSecondPicLbl = nullptr;
    QFrame* m_pComparisonFrame = nullptr;
    QLabel* m_pSimilarityLbl = nullptr;
    QLabel* m_pBigMaskIcon = nullptr;
    QLabel* m_pCameraLbl = nullptr;
    QLabel* m_pTimeLbl = nullptr;
    QLabel* m_pBigPicLbl = nullptr;  // the scene of a capture
    QStackedWidget* m_pStackedWidget = nullptr;

    // Page 0: captions and values in the order Gender, GauzeMask, AgeGroup,
    // WearGlasses, FacialExpression, Beard, WearAHat, TemperatureState.
    std::array<QLabel*, 8> m_attributeCaptions{};
    std::array<QLabel*, 8> m_attributeValues{};
    QLabel* m_pTemperatureStateIcon = nullptr;

    // Page 1: PersonName, Contact, IDType, IDNo, DateOfBirth, ListName, Gender, GauzeMask.
    QFrame* m_pPersonFrame = nullptr;
    std::array<QLabel*, 8> m_personCaptions{};
    std::array<QLabel*, 8> m_personValues{};
    std::array<QLabel*, 4> m_extendNames{};
    std::array<QLabel*, 4> m_extendValues{};
};

} // namespace BodyTemperature
