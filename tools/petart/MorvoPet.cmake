morvo_pet(morvo SOURCES Morvo
  SETS idle celebrate alert sleep greet petted watching)
